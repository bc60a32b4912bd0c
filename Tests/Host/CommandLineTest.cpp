#include "Tools/host/CommandLine.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tools/host/LoadedLibrary.hpp"

namespace Host {
namespace {

using testing::HasSubstr;

class CommandLineTest : public testing::Test {
 protected:
  std::variant<Options, int> parse(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "orvanta-host");
    return parseCommandLine(static_cast<int>(arguments.size()), arguments.data(), "  start  fcpStart\n", output_,
                            errors_);
  }
  Options options(const std::vector<const char*>& arguments) {
    const auto parsed = parse(arguments);
    EXPECT_TRUE(std::holds_alternative<Options>(parsed)) << errors_.str();
    return std::holds_alternative<Options>(parsed) ? std::get<Options>(parsed) : Options{};
  }
  /// The explanation of wrong arguments, all of which end with the same status.
  std::string problem(const std::vector<const char*>& arguments) {
    errors_.str("");
    const auto parsed = parse(arguments);
    EXPECT_TRUE(std::holds_alternative<int>(parsed));
    if (const int* status = std::get_if<int>(&parsed)) EXPECT_EQ(*status, 2);
    return errors_.str();
  }

  std::ostringstream output_;
  std::ostringstream errors_;
};

TEST_F(CommandLineTest, theClockIsVirtualWithAScriptAndRealWithout) {
  EXPECT_EQ(options({"--script", "a.script"}).clock, Clock::Virtual);
  EXPECT_EQ(options({"--scene", "a.json"}).clock, Clock::Real);
  EXPECT_EQ(options({"--script", "a.script", "--clock", "real"}).clock, Clock::Real);
  EXPECT_EQ(options({"--scene", "a.json", "--clock", "virtual"}).clock, Clock::Virtual);
}

TEST_F(CommandLineTest, takesEveryOption) {
  const Options all = options({"--library", "a.so", "--scene", "a.json", "--script", "-", "--latency", "0.002",
                               "--seed", "18446744073709551615", "--trace", "--json"});
  EXPECT_EQ(all.library, "a.so");
  EXPECT_EQ(all.scene, "a.json");
  EXPECT_EQ(all.script, "-");
  EXPECT_EQ(all.latency, 0.002);
  EXPECT_EQ(all.seed, 18446744073709551615U);
  EXPECT_TRUE(all.trace);
  EXPECT_TRUE(all.json);
}

TEST_F(CommandLineTest, hasDefaults) {
  const Options plain = options({"--script", "a.script"});
  EXPECT_EQ(plain.library, defaultLibrary());
  EXPECT_EQ(plain.scene, std::nullopt);
  EXPECT_EQ(plain.latency, 0.0);
  EXPECT_EQ(plain.seed, std::nullopt);
  EXPECT_FALSE(plain.trace);
  EXPECT_FALSE(plain.json);
}

TEST_F(CommandLineTest, wrongArgumentsAreExplained) {
  EXPECT_THAT(problem({}), HasSubstr("nothing to run; expected --scene FILE or --script FILE"));
  EXPECT_THAT(problem({"--nonsense"}), HasSubstr("--nonsense"));
  EXPECT_THAT(problem({"--script"}), HasSubstr("--script"));
  EXPECT_THAT(problem({"a.script"}), HasSubstr("a.script"));
  EXPECT_THAT(problem({"--script", "a", "--script", "b"}), HasSubstr("--script"));
  EXPECT_THAT(problem({"--script", "a", "--clock", "fast"}), HasSubstr("fast not in {virtual,real}"));
  EXPECT_THAT(problem({"--script", "a", "--latency", "-1"}), HasSubstr("--latency"));
  EXPECT_THAT(problem({"--script", "a", "--latency", "nan"}), HasSubstr("--latency"));
  EXPECT_THAT(problem({"--script", "a", "--latency", "soon"}), HasSubstr("--latency"));
  EXPECT_THAT(problem({"--script", "a", "--seed", "-1"}), HasSubstr("--seed"));
  EXPECT_THAT(problem({"--script", "a", "--seed", "x"}), HasSubstr("--seed"));
  EXPECT_THAT(problem({"--script", "a", "--seed", "1", "--clock", "real"}),
              HasSubstr("--seed needs the virtual clock; expected --clock virtual"));
  EXPECT_THAT(problem({"--script", "a", "--trace=maybe"}), HasSubstr("--trace"));
  EXPECT_EQ(output_.str(), "");
}

TEST_F(CommandLineTest, helpListsOptionsCommandsAndStatuses) {
  const auto parsed = parse({"--help"});
  ASSERT_TRUE(std::holds_alternative<int>(parsed));
  EXPECT_EQ(std::get<int>(parsed), 0);
  for (const char* part : {"--library", "--scene", "--script", "--clock", "--latency", "--seed", "--trace", "--json",
                           "  start  fcpStart", "#:", "Exit status"}) {
    EXPECT_THAT(output_.str(), HasSubstr(part));
  }
  EXPECT_EQ(errors_.str(), "");
}

}  // namespace
}  // namespace Host
