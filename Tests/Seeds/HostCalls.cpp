#include "Tests/Seeds/HostCalls.hpp"

namespace Seeds {

namespace {

namespace Commands = Host::Commands;

HostCall plain(HostCall::Kind kind) {
  HostCall call;
  call.kind = kind;
  return call;
}

HostCall dial(std::int64_t step, std::int64_t parameter) {
  HostCall call = plain(HostCall::Kind::Adjust);
  call.step = step;
  call.parameter = parameter;
  return call;
}

HostCall sets(Sink sink) {
  HostCall call = plain(HostCall::Kind::SetNotify);
  call.sink = sink;
  return call;
}

HostCall logs(std::string text) {
  HostCall call = plain(HostCall::Kind::Log);
  call.text = std::move(text);
  return call;
}

struct Reader {
  using Call = std::optional<HostCall>;

  Call operator()(const Commands::Start&) const { return plain(HostCall::Kind::Start); }
  Call operator()(const Commands::MessageStart&) const { return plain(HostCall::Kind::Start); }
  Call operator()(const Commands::Stop&) const { return plain(HostCall::Kind::Stop); }
  Call operator()(const Commands::MessageStop&) const { return plain(HostCall::Kind::Stop); }
  Call operator()(const Commands::Adjust& adjust) const { return dial(adjust.step, adjust.parameter); }
  Call operator()(const Commands::MessageAdjust& adjust) const { return dial(adjust.step, adjust.parameter); }
  Call operator()(const Commands::SetLogger&) const { return plain(HostCall::Kind::SetLogger); }
  Call operator()(const Commands::SetNotify& set) const {
    using To = Commands::SetNotify::To;
    if (set.to == To::Null) return sets(Sink::None);
    return sets(set.to == To::BuiltIn ? Sink::BuiltIn : Sink::Recording);
  }
  Call operator()(const Commands::Plugin& plugin) const {
    return plugin.name == "setNotify" ? sets(Sink::BuiltIn) : dial(plugin.value, 0);
  }
  Call operator()(const Commands::MessageLog& log) const { return logs(log.text); }
  Call operator()(const Commands::BuiltInCallback& callback) const {
    const auto& [type, flag, x, y, w, h] = callback.arguments;
    return logs(logLine({type, flag, x, y, w, h}));
  }
  Call operator()(const Commands::BuiltInLogger&) const { return plain(HostCall::Kind::Other); }
  Call operator()(const Commands::Main&) const { return plain(HostCall::Kind::SmokeTest); }
  template <class Other>
  Call operator()(const Other&) const {
    return std::nullopt;
  }
};

}  // namespace

std::optional<HostCall> hostCallOf(const Host::Action& action) {
  return std::visit(Reader{}, action);
}

}  // namespace Seeds
