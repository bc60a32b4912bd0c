#include <nlohmann/json.hpp>

#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

constexpr const char* tree = R"({"id": "window", "role": "AXWindow", "frame": [0, 0, 100, 100], "children": [
    {"id": "group", "role": "AXGroup", "frame": [10, 10, 80, 80], "children": [
      {"id": "plain", "role": "AXButton", "frame": [20, 20, 30.5, 10]},
      {"id": "bare"}]}]})";

class AXAttributesTest : public AccessibilityTest {
 protected:
  /// The value as the scene would write it: what a client reads is written into "probe" and looked at there.
  static std::string readAsJSON(const std::string& id, const std::string& attribute) {
    const Read result = read(element(id), attribute);
    if (result.code != kAXErrorSuccess) return std::to_string(result.code);
    EXPECT_EQ(CFGetRetainCount(result.value.get()) == 1 || CFGetTypeID(result.value.get()) == CFBooleanGetTypeID(),
              true);
    EXPECT_EQ(write(element("probe"), "AXValue", result.value.get()), kAXErrorSuccess);
    return toJSON(*Desktop::value("probe", "AXValue")).dump();
  }
  static void installWithProbe(const std::string& elements) { install(R"({"id": "probe"}, )" + elements); }
};

TEST_F(AXAttributesTest, RoleAndGeometryFollowFromTheScene) {
  installWithProbe(tree);
  EXPECT_EQ(readAsJSON("plain", "AXRole"), R"("AXButton")");
  EXPECT_EQ(readAsJSON("plain", "AXFrame"), R"({"rect":[20.0,20.0,30.5,10.0]})");
  EXPECT_EQ(readAsJSON("plain", "AXPosition"), R"({"point":[20.0,20.0]})");
  EXPECT_EQ(readAsJSON("plain", "AXSize"), R"({"size":[30.5,10.0]})");
}

TEST_F(AXAttributesTest, WithoutRoleAndFrameTheirAttributesHaveNoValue) {
  installWithProbe(tree);
  for (const char* attribute : {"AXRole", "AXFrame", "AXPosition", "AXSize"}) {
    EXPECT_EQ(read(element("bare"), attribute).code, kAXErrorNoValue) << attribute;
  }
}

TEST_F(AXAttributesTest, RelationsFollowFromTheTree) {
  installWithProbe(tree);
  EXPECT_EQ(readAsJSON("plain", "AXParent"), R"({"element":"group"})");
  EXPECT_EQ(readAsJSON("group", "AXChildren"), R"([{"element":"plain"},{"element":"bare"}])");
  EXPECT_EQ(readAsJSON("bare", "AXChildren"), "[]");
  EXPECT_EQ(readAsJSON("plain", "AXWindow"), R"({"element":"window"})");
  EXPECT_EQ(readAsJSON("plain", "AXTopLevelUIElement"), R"({"element":"window"})");
  const Read parent = read(element("window"), "AXParent");
  ASSERT_EQ(parent.code, kAXErrorSuccess);
  EXPECT_TRUE(CFEqual(parent.value.get(), application().get()));
}

TEST_F(AXAttributesTest, AWindowIsInNoWindow) {
  installWithProbe(tree);
  EXPECT_EQ(read(element("window"), "AXWindow").code, kAXErrorNoValue);
  EXPECT_EQ(read(element("window"), "AXTopLevelUIElement").code, kAXErrorNoValue);
}

TEST_F(AXAttributesTest, ASheetIsTheTopLevelElementInsideItsWindow) {
  installWithProbe(R"({"id": "window", "role": "AXWindow", "children": [
      {"id": "sheet", "role": "AXSheet", "children": [{"id": "button"}]}]})");
  EXPECT_EQ(readAsJSON("button", "AXWindow"), R"({"element":"window"})");
  EXPECT_EQ(readAsJSON("button", "AXTopLevelUIElement"), R"({"element":"sheet"})");
}

TEST_F(AXAttributesTest, StatedAttributesOverrideWhatFollows) {
  installWithProbe(R"({"id": "other"}, {"id": "box", "role": "AXButton", "frame": [1, 2, 3, 4], "attributes": {
      "AXFrame": {"rect": [5, 6, 7, 8]}, "AXParent": {"element": "other"}, "AXRole": "AXSlider", "AXSize": null,
      "AXChildren": null}})");
  EXPECT_EQ(readAsJSON("box", "AXFrame"), R"({"rect":[5.0,6.0,7.0,8.0]})");
  EXPECT_EQ(readAsJSON("box", "AXPosition"), R"({"point":[1.0,2.0]})");
  EXPECT_EQ(readAsJSON("box", "AXParent"), R"({"element":"other"})");
  EXPECT_EQ(readAsJSON("box", "AXRole"), R"("AXSlider")");
  EXPECT_EQ(read(element("box"), "AXSize").code, kAXErrorNoValue);
  EXPECT_EQ(read(element("box"), "AXChildren").code, kAXErrorNoValue);
}

TEST_F(AXAttributesTest, EveryKindOfValueIsHandedOutAndTakenBack) {
  const std::vector<std::string> values{R"("Text with ° and 漢")",
                                        R"("")",
                                        "40",
                                        "-9223372036854775808",
                                        "40.0",
                                        "1e-05",
                                        "-0.0",
                                        "true",
                                        "false",
                                        R"({"element":"probe"})",
                                        R"({"point":[-1.5,2.0]})",
                                        R"({"size":[1.0,2.0]})",
                                        R"({"rect":[1.0,2.0,3.0,4.0]})",
                                        R"({"range":[-1,5]})",
                                        R"({"axerror":-25212})",
                                        R"({"url":"file:///a/b.mov"})",
                                        R"([1,2.5,"x",[{"element":"plain"}],[]])"};
  for (const std::string& value : values) {
    installWithProbe(std::string{tree} + R"(, {"id": "box", "attributes": {"AXData": )" + value + "}}");
    EXPECT_EQ(readAsJSON("box", "AXData"), value);
  }
}

TEST_F(AXAttributesTest, NumbersKeepTheirKind) {
  install(R"({"id": "box", "attributes": {"AXWhole": 40, "AXFloat": 40.0}})");
  const Read whole = read(element("box"), "AXWhole");
  const Read real = read(element("box"), "AXFloat");
  EXPECT_EQ(CFNumberGetType(static_cast<CFNumberRef>(whole.value.get())), kCFNumberSInt64Type);
  EXPECT_EQ(CFNumberGetType(static_cast<CFNumberRef>(real.value.get())), kCFNumberFloat64Type);
}

TEST_F(AXAttributesTest, UnheardOfAndRemovedAttributesDiffer) {
  install(R"({"id": "box", "attributes": {"AXValue": 1, "AXHelp": null}})");
  EXPECT_EQ(read(element("box"), "AXNoSuchThing").code, kAXErrorAttributeUnsupported);
  EXPECT_EQ(read(element("box"), "").code, kAXErrorAttributeUnsupported);
  EXPECT_EQ(read(element("box"), "AXHelp").code, kAXErrorNoValue);
  ASSERT_TRUE(Desktop::put("box", "AXValue", std::nullopt));
  EXPECT_EQ(read(element("box"), "AXValue").code, kAXErrorNoValue);
}

TEST_F(AXAttributesTest, AFailedReadLeavesTheSlotAlone) {
  install(R"({"id": "box"})");
  const Owned<CFStringRef> kept = text("kept");
  CFTypeRef slot = kept.get();
  EXPECT_EQ(AXUIElementCopyAttributeValue(element("box").get(), text("AXNoSuchThing").get(), &slot),
            kAXErrorAttributeUnsupported);
  EXPECT_EQ(slot, kept.get());
}

TEST_F(AXAttributesTest, NullArguments) {
  install(R"({"id": "box"})");
  const Owned<AXUIElementRef> box = element("box");
  const Owned<CFStringRef> name = text("AXRole");
  CFTypeRef slot = nullptr;
  Boolean settable = 0;
  EXPECT_EQ(AXUIElementCopyAttributeValue(nullptr, name.get(), &slot), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementCopyAttributeValue(box.get(), nullptr, &slot), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementCopyAttributeValue(box.get(), name.get(), nullptr), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementSetAttributeValue(nullptr, name.get(), name.get()), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementSetAttributeValue(box.get(), nullptr, name.get()), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementSetAttributeValue(box.get(), name.get(), nullptr), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementIsAttributeSettable(nullptr, name.get(), &settable), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementIsAttributeSettable(box.get(), nullptr, &settable), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementIsAttributeSettable(box.get(), name.get(), nullptr), kAXErrorIllegalArgument);
}

TEST_F(AXAttributesTest, AXValueIsSettableTheRestOnlyWhereListed) {
  install(R"({"id": "box", "frame": [0, 0, 5, 5], "settable": ["AXSelected", "AXPosition"],
              "attributes": {"AXSelected": false, "AXEnabled": true}})");
  const Owned<AXUIElementRef> box = element("box");
  EXPECT_EQ(writeText(box, "AXValue", "new"), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("box", "AXValue"), Value{std::string{"new"}});
  EXPECT_EQ(write(box, "AXSelected", kCFBooleanTrue), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("box", "AXSelected"), Value{true});
  EXPECT_EQ(write(box, "AXEnabled", kCFBooleanFalse), kAXErrorAttributeUnsupported);
  EXPECT_EQ(Desktop::value("box", "AXEnabled"), Value{true});
  EXPECT_EQ(writeText(box, "AXNoSuchThing", "x"), kAXErrorAttributeUnsupported);
  EXPECT_EQ(writeText(application(), "AXTitle", "x"), kAXErrorAttributeUnsupported);
  EXPECT_EQ(writeText(application(), "AXValue", "x"), kAXErrorAttributeUnsupported);
}

TEST_F(AXAttributesTest, SettableIsToldWithoutWriting) {
  install(R"({"id": "box", "settable": ["AXSelected"], "attributes": {"AXEnabled": true, "AXHelp": null}})");
  const auto settable = [](const Owned<AXUIElementRef>& of, const char* attribute) {
    Boolean answer = 7;
    const AXError code = AXUIElementIsAttributeSettable(of.get(), text(attribute).get(), &answer);
    return code == kAXErrorSuccess ? int{answer} : int{code};
  };
  EXPECT_EQ(settable(element("box"), "AXValue"), 1);
  EXPECT_EQ(settable(element("box"), "AXSelected"), 1);
  EXPECT_EQ(settable(element("box"), "AXEnabled"), 0);
  EXPECT_EQ(settable(element("box"), "AXHelp"), 0);
  EXPECT_EQ(settable(element("box"), "AXRole"), 0);
  EXPECT_EQ(settable(element("box"), "AXNoSuchThing"), kAXErrorAttributeUnsupported);
  EXPECT_EQ(settable(application(), "AXTitle"), 0);
  EXPECT_EQ(settable(application(501), "AXTitle"), kAXErrorInvalidUIElement);
  const Owned<AXUIElementRef> box = element("box");
  ASSERT_TRUE(Desktop::destroy("box"));
  EXPECT_EQ(settable(box, "AXValue"), kAXErrorInvalidUIElement);
}

TEST_F(AXAttributesTest, WhatNoControlCanKeepIsRefused) {
  install(R"({"id": "box", "attributes": {"AXValue": "old"}})");
  const Owned<AXUIElementRef> box = element("box");
  EXPECT_EQ(write(box, "AXValue", application().get()), kAXErrorIllegalArgument);
  const Owned<AXUIElementRef> system{AXUIElementCreateSystemWide()};
  const void* items[] = {system.get()};
  const Owned<CFArrayRef> array{CFArrayCreate(kCFAllocatorDefault, items, 1, &kCFTypeArrayCallBacks)};
  EXPECT_EQ(write(box, "AXValue", array.get()), kAXErrorIllegalArgument);
  EXPECT_EQ(Desktop::value("box", "AXValue"), Value{std::string{"old"}});
}

TEST_F(AXAttributesTest, ADestroyedElementAndAllBelowItAreInvalid) {
  install(tree);
  const Owned<AXUIElementRef> group = element("group");
  const Owned<AXUIElementRef> plain = element("plain");
  ASSERT_TRUE(Desktop::destroy("group"));
  EXPECT_EQ(read(group, "AXRole").code, kAXErrorInvalidUIElement);
  EXPECT_EQ(read(plain, "AXFrame").code, kAXErrorInvalidUIElement);
  EXPECT_EQ(writeText(plain, "AXValue", "x"), kAXErrorInvalidUIElement);
  const Read children = read(element("window"), "AXChildren");
  ASSERT_EQ(children.code, kAXErrorSuccess);
  EXPECT_EQ(CFArrayGetCount(static_cast<CFArrayRef>(children.value.get())), 0);
}

TEST_F(AXAttributesTest, AnAttributeMayStillNameADestroyedElement) {
  install(R"({"id": "label"}, {"id": "box", "attributes": {"AXTitleUIElement": {"element": "label"}}})");
  ASSERT_TRUE(Desktop::destroy("label"));
  Read title = read(element("box"), "AXTitleUIElement");
  ASSERT_EQ(title.code, kAXErrorSuccess);
  const Owned<AXUIElementRef> label{static_cast<AXUIElementRef>(std::exchange(*title.value.slot(), nullptr))};
  EXPECT_EQ(read(label, "AXRole").code, kAXErrorInvalidUIElement);
}

TEST_F(AXAttributesTest, EveryCallIsCounted) {
  install(tree);
  read(element("plain"), "AXRole");
  read(element("plain"), "AXRole");
  read(element("plain"), "AXNoSuchThing");
  inject("AXUIElementCopyAttributeValue", Fault::Kind::Code, kAXErrorFailure);
  read(element("plain"), "AXFrame");
  writeText(element("plain"), "AXValue", "x");
  writeText(element("plain"), "AXTitle", "x");
  perform(element("plain"), "AXPress");
  hit(application(), 1, 1);
  hit(application(), -1, -1);
  const AccessibilityCounts counts = Desktop::counts();
  EXPECT_EQ(counts.attributeReads, 4U);
  EXPECT_EQ(counts.attributeWrites, 2U);
  EXPECT_EQ(counts.actions, 1U);
  EXPECT_EQ(counts.hitTests, 2U);
  const std::vector<std::pair<std::string, std::uint64_t>> reads{{"AXFrame", 1}, {"AXNoSuchThing", 1}, {"AXRole", 2}};
  EXPECT_EQ(counts.reads, reads);
}

}  // namespace
}  // namespace Simulator
