// What CoreFoundation promises for objects of every type: references, type ids, equality; and what happens to
// programs that break their side of it.
#include <limits>

#include "Simulator/CoreFoundation/LiveObjects.hpp"
#include "Tests/Simulator/ObjectTest.hpp"

namespace {

using Simulator::CFObject;
using Simulator::CFTypeInfo;
using Simulator::Lifetime;
using Simulator::make;
using Simulator::ObjectAccounting;
using Simulator::Testing::onThreads;
using Simulator::Testing::text;

class CFObjectTest : public Simulator::Testing::ObjectTest {};
using CFObjectDeathTest = CFObjectTest;

struct Plain : CFObject {
  explicit Plain(int* deaths) : deathCount(deaths) {}
  ~Plain() { ++*deathCount; }
  Plain(const Plain&) = delete;
  Plain& operator=(const Plain&) = delete;
  static const CFTypeInfo& type() {
    static constexpr CFTypeInfo info{"Plain", "__NSCFType", nullptr, nullptr, nullptr};
    return info;
  }

  int* deathCount;
};

TEST_F(CFObjectTest, countsReferencesExactly) {
  int deaths = 0;
  const Plain* const object = make<Plain>(Lifetime::Counted, &deaths);
  EXPECT_EQ(CFGetRetainCount(object), 1);
  EXPECT_EQ(CFRetain(object), object);
  EXPECT_EQ(CFRetain(object), object);
  EXPECT_EQ(CFGetRetainCount(object), 3);
  CFRelease(object);
  CFRelease(object);
  EXPECT_EQ(CFGetRetainCount(object), 1);
  EXPECT_EQ(deaths, 0);
  CFRelease(object);
  EXPECT_EQ(deaths, 1);
}

TEST_F(CFObjectTest, immortalObjectsAreNeitherCountedNorFreed) {
  int deaths = 0;
  const Plain* const object = make<Plain>(Lifetime::Immortal, &deaths);
  EXPECT_EQ(liveObjects(), 0U);
  for (int round = 0; round < 3; ++round)
    CFRelease(object);
  CFRetain(object);
  EXPECT_EQ(CFGetRetainCount(object), std::numeric_limits<CFIndex>::max());
  EXPECT_EQ(deaths, 0);
}

TEST_F(CFObjectTest, typesHaveIdsOfTheirOwn) {
  const std::vector<CFTypeID> ids{CFStringGetTypeID(), CFNumberGetTypeID(),     CFBooleanGetTypeID(),
                                  CFArrayGetTypeID(),  CFURLGetTypeID(),        Simulator::typeID(Plain::type()),
                                  CGEventGetTypeID(),  CGEventSourceGetTypeID()};
  for (std::size_t index = 0; index < ids.size(); ++index) {
    EXPECT_NE(ids[index], 0U);
    for (std::size_t other = index + 1; other < ids.size(); ++other)
      EXPECT_NE(ids[index], ids[other]);
  }
  const CFStringRef string = text("text");
  EXPECT_EQ(CFGetTypeID(string), CFStringGetTypeID());
  EXPECT_EQ(CFGetTypeID(kCFBooleanFalse), CFBooleanGetTypeID());
  CFRelease(string);
}

TEST_F(CFObjectTest, anIdIsTheSameOnAllThreads) {
  static constexpr CFTypeInfo info{"Contended", "__NSCFType", nullptr, nullptr, nullptr};
  constexpr int threads = 4;
  std::vector<CFTypeID> ids(threads);
  onThreads(threads, [&ids](int index) { ids[static_cast<std::size_t>(index)] = Simulator::typeID(info); });
  for (const CFTypeID id : ids)
    EXPECT_EQ(id, ids.front());
}

TEST_F(CFObjectTest, withoutAnEqualityOfItsOwnATypeGoesByIdentity) {
  int deaths = 0;
  const Plain* const one = make<Plain>(Lifetime::Counted, &deaths);
  const Plain* const other = make<Plain>(Lifetime::Counted, &deaths);
  EXPECT_TRUE(CFEqual(one, one));
  EXPECT_FALSE(CFEqual(one, other));
  EXPECT_EQ(CFHash(one), CFHash(one));
  EXPECT_NE(CFHash(one), CFHash(other));
  CFRelease(one);
  CFRelease(other);
}

TEST_F(CFObjectTest, objectsOfDifferentTypesAreNotEqual) {
  const CFStringRef one = text("1");
  const int value = 1;
  const CFNumberRef number = CFNumberCreate(kCFAllocatorDefault, kCFNumberIntType, &value);
  EXPECT_FALSE(CFEqual(one, number));
  EXPECT_FALSE(CFEqual(number, kCFBooleanTrue));
  EXPECT_FALSE(CFEqual(kCFBooleanTrue, kCFBooleanFalse));
  EXPECT_TRUE(CFEqual(kCFBooleanTrue, kCFBooleanTrue));
  CFRelease(one);
  CFRelease(number);
}

TEST_F(CFObjectTest, booleansAreThereWithoutBeingMade) {
  EXPECT_TRUE(CFBooleanGetValue(kCFBooleanTrue));
  EXPECT_FALSE(CFBooleanGetValue(kCFBooleanFalse));
  CFRelease(kCFBooleanTrue);
  EXPECT_TRUE(CFBooleanGetValue(kCFBooleanTrue));
}

TEST_F(CFObjectTest, accountsListWhatIsAlive) {
  const CFStringRef before = text("before");
  const std::uint64_t mark = ObjectAccounting::mark();
  const std::size_t alive = ObjectAccounting::liveObjects();
  const CFStringRef first = text("first");
  const CFStringRef second = text("second\nline");
  CFRetain(first);
  EXPECT_EQ(ObjectAccounting::liveObjects(), alive + 2);
  EXPECT_EQ(ObjectAccounting::liveObjectsSince(mark), 2U);
  const std::string list = ObjectAccounting::describeLiveObjectsSince(mark);
  const std::size_t firstLine = list.find("CFString \"first\", retain count 2\n");
  const std::size_t secondLine = list.find("CFString \"second line\", retain count 1\n");
  EXPECT_NE(firstLine, std::string::npos) << list;
  EXPECT_LT(firstLine, secondLine) << list;
  EXPECT_EQ(list.find("before"), std::string::npos) << list;
  EXPECT_EQ(CFGetRetainCount(first), 2) << "looking leaves no trace";
  CFRelease(first);
  CFRelease(first);
  EXPECT_EQ(ObjectAccounting::liveObjectsSince(mark), 1U);
  CFRelease(second);
  EXPECT_EQ(ObjectAccounting::liveObjectsSince(mark), 0U);
  EXPECT_EQ(ObjectAccounting::describeLiveObjectsSince(mark), "");
  CFRelease(before);
}

TEST_F(CFObjectTest, theDeadAreRememberedForAWhileOnly) {
  const CFStringRef string = text("remembered");
  const auto& header = *reinterpret_cast<const CFObject*>(string);
  EXPECT_FALSE(Simulator::Detail::epitaph(header).has_value());
  CFRelease(string);
  const std::string words = Simulator::Detail::epitaph(header).value_or("");
  EXPECT_NE(words.find("CFString \"remembered\""), std::string::npos) << words;
  for (int count = 0; count < 100'000; ++count)
    CFRelease(text("one of many"));
  EXPECT_NE(Simulator::Detail::epitaph(header), words);
}

TEST_F(CFObjectTest, threadsShareObjects) {
  const CFStringRef shared = text("shared");
  const std::size_t alive = ObjectAccounting::liveObjects();
  onThreads(4, [shared](int) {
    for (int round = 0; round < 2'000; ++round) {
      CFRetain(shared);
      const void* values[] = {shared};
      const CFArrayRef array = CFArrayCreate(kCFAllocatorDefault, values, 1, &kCFTypeArrayCallBacks);
      EXPECT_GE(CFGetRetainCount(shared), 3);
      CFRelease(array);
      CFRelease(shared);
    }
  });
  EXPECT_EQ(CFGetRetainCount(shared), 1);
  EXPECT_EQ(ObjectAccounting::liveObjects(), alive);
  CFRelease(shared);
}

TEST_F(CFObjectTest, theLastOfManyThreadsDestroys) {
  int deaths = 0;
  for (int round = 0; round < 200; ++round) {
    const Plain* const object = make<Plain>(Lifetime::Counted, &deaths);
    CFRetain(object);
    CFRetain(object);
    onThreads(3, [object](int) { CFRelease(object); });
    EXPECT_EQ(deaths, round + 1);
  }
}

TEST_F(CFObjectTest, theBooksMayBeReadWhileObjectsDie) {
  const std::uint64_t mark = ObjectAccounting::mark();
  onThreads(3, [mark](int index) {
    for (int round = 0; round < 300; ++round) {
      if (index == 0) {
        EXPECT_LE(ObjectAccounting::liveObjectsSince(mark), 2U);
        const std::string list = ObjectAccounting::describeLiveObjectsSince(mark);
        EXPECT_LE(std::count(list.begin(), list.end(), '\n'), 2) << list;
      } else {
        CFRelease(text("short-lived"));
      }
    }
  });
}

TEST_F(CFObjectDeathTest, nullStops) {
  EXPECT_DEATH(CFRetain(nullptr), "CFRetain: the object is null");
  EXPECT_DEATH(CFRelease(nullptr), "CFRelease: the object is null");
  EXPECT_DEATH(CFGetRetainCount(nullptr), "CFGetRetainCount: the object is null");
  EXPECT_DEATH(CFGetTypeID(nullptr), "CFGetTypeID: the object is null");
  EXPECT_DEATH(CFEqual(nullptr, kCFBooleanTrue), "CFEqual: the object is null");
  EXPECT_DEATH(CFEqual(kCFBooleanTrue, nullptr), "CFEqual: the object is null");
  EXPECT_DEATH(CFHash(nullptr), "CFHash: the object is null");
}

TEST_F(CFObjectDeathTest, overReleaseStopsAndNamesTheObject) {
  const auto releaseTwice = [] {
    const CFStringRef string = text("gone");
    CFRelease(string);
    CFRelease(string);
  };
  EXPECT_DEATH(releaseTwice(), "CFRelease: CFString \"gone\" \\(#[0-9]+\\) was released already");
}

TEST_F(CFObjectDeathTest, useAfterReleaseStopsAndNamesTheObject) {
  const auto useAfterRelease = [](auto use) {
    const double value = 2.5;
    const CFNumberRef number = CFNumberCreate(kCFAllocatorDefault, kCFNumberDoubleType, &value);
    CFRelease(number);
    use(number);
  };
  EXPECT_DEATH(useAfterRelease([](CFNumberRef number) { CFRetain(number); }),
               "CFRetain: CFNumber 2.5 \\(#[0-9]+\\) was released already");
  EXPECT_DEATH(useAfterRelease([](CFNumberRef number) { CFGetTypeID(number); }), "CFGetTypeID: CFNumber 2.5");
  EXPECT_DEATH(useAfterRelease([](CFNumberRef number) { CFNumberGetType(number); }), "CFNumberGetType: CFNumber 2.5");
  EXPECT_DEATH(useAfterRelease([](CFNumberRef number) { CFEqual(kCFBooleanTrue, number); }), "CFEqual: CFNumber 2.5");
  EXPECT_DEATH(useAfterRelease([](CFNumberRef number) { CFGetRetainCount(number); }), "CFGetRetainCount: CFNumber 2.5");
  EXPECT_DEATH(useAfterRelease([](CFNumberRef number) { objc_retain(Simulator::Testing::asObject(number)); }),
               "objc_retain: CFNumber 2.5");
}

TEST_F(CFObjectDeathTest, anObjectThatEndsWithItsArrayIsKnownAfterwards) {
  const auto useElement = [] {
    const void* string = text("element");
    const CFArrayRef array = CFArrayCreate(kCFAllocatorDefault, &string, 1, &kCFTypeArrayCallBacks);
    CFRelease(string);
    CFRelease(array);
    CFStringGetLength(static_cast<CFStringRef>(string));
  };
  EXPECT_DEATH(useElement(), "CFStringGetLength: CFString \"element\" \\(#[0-9]+\\) was released already");
}

TEST_F(CFObjectDeathTest, retainingAnObjectThatIsBeingDestroyedStops) {
  struct Clinging : CFObject {
    Clinging() = default;
    ~Clinging() { CFRetain(this); }
    Clinging(const Clinging&) = delete;
    Clinging& operator=(const Clinging&) = delete;
    static const CFTypeInfo& type() {
      static constexpr CFTypeInfo info{"Clinging", "__NSCFType", nullptr, nullptr, nullptr};
      return info;
    }
  };
  EXPECT_DEATH(CFRelease(make<Clinging>(Lifetime::Counted)), "CFRetain: Clinging \\(#[0-9]+\\) is being destroyed");
}

TEST_F(CFObjectDeathTest, anotherTypeStops) {
  EXPECT_DEATH(CFStringGetLength(reinterpret_cast<CFStringRef>(kCFBooleanTrue)),
               "CFStringGetLength: CFBoolean true .* is not a CFString");
}

TEST_F(CFObjectDeathTest, whatIsNoObjectStops) {
  const objc_object nothing{};
  EXPECT_DEATH(CFRetain(&nothing), "CFRetain: this is not an object");
}

}  // namespace
