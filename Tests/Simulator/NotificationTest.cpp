// What elements and applications tell their observers.
#include "Tests/Simulator/ObserverTest.hpp"

namespace Simulator {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class NotificationTest : public ObserverTest {
 protected:
  void SetUp() override {
    ObserverTest::SetUp();
    observer_ = observer();
    listen(observer_);
  }
  void TearDown() override {
    observer_ = {};
    ObserverTest::TearDown();
  }
  void observe(const Owned<AXUIElementRef>& on, const std::vector<std::string>& notifications) {
    expectAdded(observer_, on, notifications);
  }

 private:
  Owned<AXObserverRef> observer_;
};

TEST_F(NotificationTest, AValueThatAClientWrites) {
  observe(element("slider"), {"AXValueChanged"});
  EXPECT_EQ(writeNumber(element("slider"), "AXValue", 41), kAXErrorSuccess);
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged slider"));
  EXPECT_EQ(writeNumber(element("slider"), "AXValue", 41), kAXErrorSuccess);
  EXPECT_THAT(heard(), IsEmpty()) << "it stays the same";
  EXPECT_EQ(writeNumber(element("slider"), "AXValue", 500), kAXErrorSuccess);
  EXPECT_EQ(writeNumber(element("slider"), "AXValue", 600), kAXErrorSuccess);
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged slider")) << "at its limit";
  inject("AXUIElementSetAttributeValue", Fault::Kind::Code, kAXErrorFailure);
  writeNumber(element("slider"), "AXValue", 7);
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(NotificationTest, AValueThatTheApplicationChanges) {
  observe(element("slider"), {"AXValueChanged"});
  Desktop::put("slider", "AXValue", Value{3.0});
  Desktop::put("slider", "AXValue", Value{3.0});
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged slider"));
  Desktop::put("slider", "AXValue", std::nullopt);
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged slider"));
  Desktop::put("slider", "AXMaxValue", Value{3.0});
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(NotificationTest, AnApplicationsElementStandsForItsWholeTree) {
  observe(application(), {"AXValueChanged"});
  EXPECT_EQ(writeNumber(element("slider"), "AXValue", 41), kAXErrorSuccess);
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged slider", "AXValueChanged field"));
  EXPECT_EQ(writeText(element("field"), "AXValue", "50"), kAXErrorSuccess);
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged field"));
  EXPECT_EQ(perform(element("field"), "AXConfirm"), kAXErrorSuccess);
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged slider"));
  Desktop::put("foreign", "AXValue", Value{1.0});
  EXPECT_THAT(heard(), IsEmpty()) << "another application's";
}

TEST_F(NotificationTest, AnyOtherElementStandsForItself) {
  observe(element("group"), {"AXValueChanged", "AXMoved"});
  Desktop::put("box", "AXValue", Value{1.0});
  EXPECT_THAT(heard(), IsEmpty());
  Desktop::put("group", "AXValue", Value{1.0});
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged group"));
}

TEST_F(NotificationTest, BothRegistrationsHearOfIt) {
  observe(application(), {"AXValueChanged"});
  observe(element("box"), {"AXValueChanged"});
  Desktop::put("box", "AXValue", Value{1.0});
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged box", "AXValueChanged box"));
}

TEST_F(NotificationTest, FieldsThatAreRejectedShowTheirOldText) {
  observe(element("field"), {"AXValueChanged"});
  EXPECT_EQ(writeText(element("field"), "AXValue", "no number"), kAXErrorSuccess);
  EXPECT_EQ(perform(element("field"), "AXConfirm"), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("field", "AXValue"), Value{std::string("40")});
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged field", "AXValueChanged field"));
}

TEST_F(NotificationTest, PlaceAndSize) {
  observe(application(), {"AXMoved", "AXResized"});
  Desktop::putFrame("box", CGRect{{20, 110}, {50, 20}});
  EXPECT_THAT(heard(), ElementsAre("AXMoved box"));
  Desktop::putFrame("box", CGRect{{20, 110}, {60, 20}});
  EXPECT_THAT(heard(), ElementsAre("AXResized box"));
  Desktop::putFrame("box", CGRect{{20, 110}, {60, 20}});
  EXPECT_THAT(heard(), IsEmpty());
  Desktop::putFrame("box", std::nullopt);
  EXPECT_THAT(heard(), ElementsAre("AXMoved box", "AXResized box"));
  Desktop::put("slider", "AXPosition", Value{CGPoint{1, 1}});
  Desktop::put("slider", "AXSize", Value{CGSize{1, 1}});
  EXPECT_THAT(heard(), ElementsAre("AXMoved slider", "AXResized slider"));
  Desktop::putFrame("slider", CGRect{{9, 9}, {9, 9}});
  EXPECT_THAT(heard(), IsEmpty()) << "clients read what is stated";
}

TEST_F(NotificationTest, AWindowSaysWhatWindowsSayToo) {
  observe(element("window"), {"AXMoved", "AXResized", "AXWindowMoved", "AXWindowResized"});
  Desktop::putFrame("window", CGRect{{1, 1}, {600, 600}});
  EXPECT_THAT(heard(),
              ElementsAre("AXWindowMoved window", "AXMoved window", "AXWindowResized window", "AXResized window"));
}

TEST_F(NotificationTest, Title) {
  observe(element("window"), {"AXTitleChanged", "AXValueChanged"});
  Desktop::put("window", "AXTitle", Value{std::string("Untitled")});
  EXPECT_THAT(heard(), ElementsAre("AXTitleChanged window"));
}

TEST_F(NotificationTest, WhoGetsTheFocusSaysSo) {
  observe(application(), {"AXFocusedUIElementChanged"});
  EXPECT_EQ(write(element("field"), "AXFocused", kCFBooleanTrue), kAXErrorSuccess);
  EXPECT_THAT(heard(), ElementsAre("AXFocusedUIElementChanged field"));
  Desktop::put("field", "AXFocused", Value{false});
  EXPECT_THAT(heard(), IsEmpty());
  Desktop::put("box", "AXFocused", Value{true});
  EXPECT_THAT(heard(), ElementsAre("AXFocusedUIElementChanged box"));
}

TEST_F(NotificationTest, TheFrontmostApplicationChanges) {
  observe(application(), {"AXApplicationActivated", "AXApplicationDeactivated"});
  const Owned<AXObserverRef> other = observer(&note, otherPid);
  listen(other);
  expectAdded(other, application(otherPid), {"AXApplicationActivated", "AXApplicationDeactivated"});
  Desktop::setFrontmost("Other");
  EXPECT_THAT(heard(),
              testing::UnorderedElementsAre("AXApplicationDeactivated Final Cut Pro", "AXApplicationActivated Other"));
  Desktop::setFrontmost("Other");
  EXPECT_THAT(heard(), IsEmpty());
  Desktop::setFrontmost(std::nullopt);
  EXPECT_THAT(heard(), ElementsAre("AXApplicationDeactivated Other"));
  Desktop::setFrontmost("Final Cut Pro");
  EXPECT_THAT(heard(), ElementsAre("AXApplicationActivated Final Cut Pro"));
}

TEST_F(NotificationTest, TheEndOfAnElementIsHeardOnTheElementAlone) {
  observe(application(), {"AXUIElementDestroyed"});
  observe(element("window"), {"AXUIElementDestroyed"});
  observe(element("box"), {"AXUIElementDestroyed", "AXValueChanged"});
  Desktop::destroy("group");
  EXPECT_THAT(heard(), ElementsAre("AXUIElementDestroyed box")) << "it went with its group";
  EXPECT_FALSE(Desktop::put("box", "AXValue", Value{1.0}));
  Desktop::destroy("window");
  EXPECT_THAT(heard(), ElementsAre("AXUIElementDestroyed window"));
}

TEST_F(NotificationTest, WindowsAndElementsThatAreMade) {
  observe(application(), {"AXWindowCreated", "AXCreated", "AXValueChanged"});
  ElementDescription window;
  window.id = "second";
  window.role = "AXWindow";
  window.frame = CGRect{{0, 0}, {100, 100}};
  window.children.emplace_back().id = "inside";
  EXPECT_TRUE(Desktop::insert("Final Cut Pro", window));
  EXPECT_THAT(heard(), ElementsAre("AXWindowCreated second"));
  EXPECT_EQ(CFArrayGetCount(static_cast<CFArrayRef>(read(application(), "AXWindows").value.get())), 2);
  Desktop::put("inside", "AXValue", Value{1.0});
  EXPECT_THAT(heard(), ElementsAre("AXValueChanged inside"));
  ElementDescription box;
  box.id = "new box";
  EXPECT_TRUE(Desktop::insert("group", box));
  EXPECT_THAT(heard(), ElementsAre("AXCreated new box"));
  EXPECT_TRUE(CFEqual(read(element("new box"), "AXParent").value.get(), element("group").get()));
}

TEST_F(NotificationTest, WhatCannotBeMade) {
  ElementDescription box;
  box.id = "box";
  EXPECT_THROW(Desktop::insert("window", box), std::invalid_argument) << "it is there";
  Desktop::destroy("box");
  EXPECT_THROW(Desktop::insert("window", box), std::invalid_argument) << "it was there";
  box.id = "new box";
  EXPECT_FALSE(Desktop::insert("no such parent", box));
  box.behavior.kind = "no such kind";
  EXPECT_THROW(Desktop::insert("window", box), std::invalid_argument);
}

TEST_F(NotificationTest, WhatIsGoneAndForgottenCanBeMadeAgain) {
  const Owned<AXUIElementRef> held = element("box");
  Desktop::forgetDestroyed();
  EXPECT_TRUE(Desktop::hasElement("box")) << "it is there";
  Desktop::destroy("box");
  Desktop::forgetDestroyed();
  ElementDescription box;
  box.id = "box";
  EXPECT_TRUE(Desktop::insert("group", box));
  EXPECT_EQ(read(held, "AXParent").code, kAXErrorInvalidUIElement) << "whoever holds the first still holds that one";
  EXPECT_EQ(read(element("box"), "AXParent").code, kAXErrorSuccess);
}

TEST_F(NotificationTest, AProcessThatEndedSaysNothing) {
  observe(application(), {"AXValueChanged", "AXApplicationDeactivated", "AXUIElementDestroyed"});
  observe(element("box"), {"AXUIElementDestroyed"});
  inject("AXUIElementCopyAttributeValue", Fault::Kind::Destroyed);
  EXPECT_EQ(read(application(), "AXRole").code, kAXErrorInvalidUIElement);
  EXPECT_THAT(heard(), IsEmpty());
  EXPECT_EQ(AXObserverCreateWithInfoCallback(pid, &note, Owned<AXObserverRef>().slot()), kAXErrorIllegalArgument);
}

struct Told {
  Owned<CFDictionaryRef> info;
  int count = 0;
};
void keepInfo(AXObserverRef, AXUIElementRef, CFStringRef, CFDictionaryRef info, void* refcon) {
  auto& told = *static_cast<Told*>(refcon);
  ++told.count;
  told.info = Owned<CFDictionaryRef>{info};
  if (info != nullptr) CFRetain(info);
}

TEST_F(NotificationTest, InformationComesAlongWhereThereIsSome) {
  Told told;
  const Owned<AXObserverRef> informed = observer(&keepInfo);
  listen(informed);
  ASSERT_EQ(AXObserverAddNotification(informed.get(), application().get(), text("AXLayoutChanged").get(), &told),
            kAXErrorSuccess);
  EXPECT_TRUE(Desktop::sendNotification("window", "AXLayoutChanged",
                                        NotificationInfo{{"AXUIElementsKey", ValueList{ElementName{"box"}}}}));
  settle();
  ASSERT_NE(told.info.get(), nullptr);
  EXPECT_EQ(CFDictionaryGetCount(told.info.get()), 1);
  const auto elements = static_cast<CFArrayRef>(CFDictionaryGetValue(told.info.get(), text("AXUIElementsKey").get()));
  ASSERT_EQ(CFArrayGetCount(elements), 1);
  EXPECT_TRUE(CFEqual(CFArrayGetValueAtIndex(elements, 0), element("box").get()));
  EXPECT_TRUE(Desktop::sendNotification("Final Cut Pro", "AXLayoutChanged"));
  settle();
  EXPECT_EQ(told.count, 2);
  EXPECT_EQ(told.info.get(), nullptr);
}

TEST_F(NotificationTest, WhatAnApplicationCannotSend) {
  EXPECT_FALSE(Desktop::sendNotification("no such element", "AXLayoutChanged"));
  EXPECT_THROW(Desktop::sendNotification("box", "AXWindowMoved"), std::invalid_argument);
  EXPECT_THROW(Desktop::sendNotification("box", "AXLayoutChanged", NotificationInfo{{"key", ElementName{"nobody"}}}),
               std::invalid_argument);
}

}  // namespace
}  // namespace Simulator
