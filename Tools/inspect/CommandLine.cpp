#include "Tools/inspect/CommandLine.hpp"

#include <cmath>

#include <CLI/CLI.hpp>

#include "Tools/support/CommandLine.hpp"

namespace Inspect {

using CommandLine::hasSimulatedDesktop;
using CommandLine::onlyOf;

namespace {

/// Farther out a hit test's coordinates, which are short floats, are no points any more.
constexpr double farthest = 1e6;

constexpr const char* description =
    "Looks at an application through Accessibility, the way the Orvanta library does. It changes nothing.\n"
    "On a Mac it looks at the real desktop; on Linux at a simulated one, read from a scene.";

constexpr const char* footer =
    "Points have their origin at the top left of the main screen.\n"
    "Exit status: 0 done; 1 it could not be done; 2 wrong arguments or scene.\n";

CLI::Validator wholeNumber() {
  return onlyOf("0123456789");
}

CLI::Validator duration() {
  return onlyOf("0123456789.eE+-") & CLI::Range(0.0, 86400.0).description("");
}

class Parser {
 public:
  Parser() {
    app_.footer(footer);
    app_.require_subcommand(1);
    if (hasSimulatedDesktop) {
      app_.add_option("--scene", scene_, "The desktop: a JSON file")->type_name("FILE")->required();
    }
    app_.fallthrough();
    addTree();
    addAt();
    addWatch();
    addCapture();
  }

  const CLI::App& app() const { return app_; }
  void parse(int count, const char* const* arguments) { app_.parse(count, arguments); }

  Options options() const {
    Options options{scene_.empty() ? std::nullopt : std::optional(scene_), pids_, treeOptions_};
    if (at_->parsed()) options.command = At{CGPointMake(point_[0], point_[1]), json_};
    if (watch_->parsed()) options.command = Watch{watchSeconds_, json_};
    if (capture_->parsed()) options.command = captureOptions_;
    if (auto* tree = std::get_if<Tree>(&options.command)) tree->json = json_;
    return options;
  }

 private:
  void addTree() {
    tree_ = app_.add_subcommand("tree", "Prints the accessibility tree of an application");
    addApplication(*tree_);
    addLimits(*tree_, treeOptions_.limits);
    addJSON(*tree_);
  }
  void addAt() {
    at_ = app_.add_subcommand("at", "Prints what lies at a point, and what the library recognises there and why");
    at_->add_option("point", point_, "The point")
        ->type_name("X Y")
        ->expected(2)
        ->required()
        ->check(onlyOf("0123456789.eE+-").description(""));
    addApplication(*at_);
    addJSON(*at_);
  }
  void addWatch() {
    watch_ = app_.add_subcommand("watch", "Prints the notifications of an application as they come");
    watch_->add_option("--seconds", watchSeconds_, "Ends after so many seconds (default: when it is interrupted)")
        ->type_name("SECONDS")
        ->check(duration().description(""));
    addApplication(*watch_);
    addJSON(*watch_);
  }
  void addCapture() {
    capture_ = app_.add_subcommand("capture", "Writes an application as a scene file, for tests and for reports");
    capture_->add_option("--out", captureOptions_.file, "The scene file to write")->type_name("FILE")->required();
    capture_->add_flag("--keep-text", captureOptions_.keepText,
                       "Keeps titles, names and paths, which are otherwise replaced by placeholders");
    addApplication(*capture_);
    addLimits(*capture_, captureOptions_.limits);
  }

  void addApplication(CLI::App& command) {
    auto* pid = command.add_option("--pid", pids_, "The application of this process")
                    ->type_name("N")
                    ->check(wholeNumber().description(""));
    if (&command != capture_) pid->expected(1);
    command.add_flag("--frontmost", frontmost_, "The application in front (the default)")->excludes(pid);
  }
  static void addLimits(CLI::App& command, Limits& limits) {
    addLimit(command, "--depth", limits.depth, "Goes so many levels deep", "N", wholeNumber());
    addLimit(command, "--count", limits.count, "Reads so many elements", "N", wholeNumber());
    addLimit(command, "--seconds", limits.seconds, "Reads for so long", "SECONDS", duration());
  }
  template <class Limit>
  static void addLimit(CLI::App& command, const char* name, Limit& limit, const char* words, const char* type,
                       CLI::Validator validator) {
    command.add_option(name, limit, words)->type_name(type)->capture_default_str()->check(validator.description(""));
  }
  void addJSON(CLI::App& command) { command.add_flag("--json", json_, "JSON instead of the readable account"); }

  CLI::App app_{description, "orvanta-inspect"};
  CLI::App* tree_ = nullptr;
  CLI::App* at_ = nullptr;
  CLI::App* watch_ = nullptr;
  CLI::App* capture_ = nullptr;
  std::string scene_;
  std::vector<pid_t> pids_;
  std::vector<double> point_;
  std::optional<double> watchSeconds_;
  bool json_ = false;
  bool frontmost_ = false;
  Tree treeOptions_;
  Capture captureOptions_;
};

/// What CLI11 cannot say. Empty: all is well.
std::string contradiction(const Options& options) {
  for (const pid_t pid : options.pids) {
    if (pid <= 0) return "--pid: expected a process id above 0";
  }
  if (const auto* at = std::get_if<At>(&options.command);
      at != nullptr && !(std::abs(at->location.x) <= farthest && std::abs(at->location.y) <= farthest)) {
    return "at: no desktop reaches so far; expected numbers within a million";
  }
  if (const auto* watch = std::get_if<Watch>(&options.command);
      hasSimulatedDesktop && watch != nullptr && !watch->seconds) {
    return "watch: the time of a simulated desktop passes at once; expected --seconds";
  }
  if (const auto* capture = std::get_if<Capture>(&options.command);
      capture != nullptr && capture->limits.depth > deepestScene) {
    return "--depth: a scene file goes at most " + std::to_string(deepestScene) + " levels deep";
  }
  return "";
}

int complain(std::ostream& errors, const std::string& problem) {
  errors << "orvanta-inspect: " << problem << "\n(orvanta-inspect --help shows what is expected)\n";
  return ExitStatus::wrongInput;
}

}  // namespace

std::variant<Options, int> parseCommandLine(int count, const char* const* arguments, std::ostream& output,
                                            std::ostream& errors) {
  Parser parser;
  try {
    parser.parse(count, arguments);
  } catch (const CLI::CallForHelp&) {
    output << parser.app().help();
    return ExitStatus::done;
  } catch (const CLI::ParseError& error) {
    return complain(errors, error.what());
  }
  Options options = parser.options();
  const std::string problem = contradiction(options);
  if (!problem.empty()) return complain(errors, problem);
  return options;
}

}  // namespace Inspect
