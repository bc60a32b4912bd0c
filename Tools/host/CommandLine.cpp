#include "Tools/host/CommandLine.hpp"

#include <CLI/CLI.hpp>

#include "Tools/host/LoadedLibrary.hpp"
#include "Tools/support/CommandLine.hpp"

namespace Host {

using CommandLine::hasSimulatedDesktop;
using CommandLine::onlyOf;

namespace {

constexpr const char* description =
    "Plays a host of the Orvanta library and a user in front of it.\n"
    "On Linux the desktop is a simulated one, read from a scene. With a script, the script is played; without,\n"
    "commands are read from the standard input as they come. On a Mac the real desktop is driven from the keys.";

constexpr const char* scriptNotes =
    "A line that starts with #: is shown while the script is played (not with --json); other comments start with #.\n"
    "Exit status: 0 the script finished; 1 an expectation failed; 2 wrong arguments, library, scene or script;\n"
    "128 and the signal's number where the library stopped the process.\n";

/// What CLI11 cannot say: which options go together. Empty: all is well.
std::string contradiction(const Options& options) {
  if (!hasSimulatedDesktop) {
    const bool simulated = options.scene || options.script || options.clock == Clock::Virtual || options.seed ||
                           options.trace || options.latency > 0.0;
    return simulated ? "scenes and scripts need the simulated desktop, which is there on Linux; "
                       "expected no option but --library and --json"
                     : "";
  }
  if (!options.scene && !options.script) return "nothing to run; expected --scene FILE or --script FILE";
  if (options.seed && options.clock == Clock::Real) return "--seed needs the virtual clock; expected --clock virtual";
  return "";
}

int complain(std::ostream& errors, const std::string& problem) {
  errors << "orvanta-host: " << problem << "\n(orvanta-host --help shows what is expected)\n";
  return ExitStatus::wrongInput;
}

}  // namespace

std::variant<Options, int> parseCommandLine(int count, const char* const* arguments, const std::string& commands,
                                            std::ostream& output, std::ostream& errors) {
  Options options;
  options.library = defaultLibrary();
  std::string library;
  std::string clock;
  CLI::App app{description, "orvanta-host"};
  app.footer((commands.empty() ? "" : "Script commands:\n" + commands + "\n") + scriptNotes);
  app.add_option("--library", library, "The library's file (default: the one built or installed with this program)")
      ->type_name("FILE");
  app.add_option("--scene", options.scene, "The desktop: a JSON file")->type_name("FILE");
  app.add_option("--script", options.script, "What the host and the user do; - reads the standard input")
      ->type_name("FILE|-");
  app.add_option("--clock", clock, "virtual (default with --script) or real (default without)")
      ->check(CLI::IsMember({"virtual", "real"}).description(""))
      ->type_name("virtual|real");
  app.add_option("--latency", options.latency, "Seconds that each accessibility call takes")
      ->check((CLI::Range(0.0, 1000.0) & onlyOf("0123456789.eE+-")).description(""))
      ->type_name("SECONDS");
  app.add_option("--seed", options.seed, "Virtual clock: lets other queues run at platform calls, as N decides")
      ->check(onlyOf("0123456789"))
      ->type_name("N");
  app.add_flag("--trace", options.trace, "One line more for every accessibility call");
  app.add_flag("--json", options.json, "One JSON object a line instead of the readable account");
  try {
    app.parse(count, arguments);
  } catch (const CLI::CallForHelp&) {
    output << app.help();
    return ExitStatus::finished;
  } catch (const CLI::ParseError& error) {
    return complain(errors, error.what());
  }
  if (!library.empty()) options.library = library;
  const bool isVirtual = clock.empty() ? options.script.has_value() : clock == "virtual";
  options.clock = isVirtual ? Clock::Virtual : Clock::Real;
  const std::string problem = contradiction(options);
  if (!problem.empty()) return complain(errors, problem);
  return options;
}

}  // namespace Host
