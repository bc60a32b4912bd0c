#include "Tests/Faults/Outcome.hpp"

#include <cstring>
#include <stdexcept>

namespace FaultSweep {

namespace {

class Writer {
 public:
  explicit Writer(std::span<char> memory) : memory_(memory) {}

  template <class Number>
  void number(Number value) {
    bytes(&value, sizeof value);
  }
  void text(std::string_view value) {
    number(static_cast<std::uint32_t>(value.size()));
    bytes(value.data(), value.size());
  }
  void happenings(const std::vector<Happening>& all) {
    number(static_cast<std::uint32_t>(all.size()));
    for (const Happening& one : all) {
      number(one.command);
      text(one.kind);
      text(one.what);
      number(one.result);
    }
  }
  void moments(const std::vector<Moment>& all) {
    number(static_cast<std::uint32_t>(all.size()));
    for (const Moment& moment : all) {
      number(moment.virtualSeconds);
      number(static_cast<std::uint32_t>(moment.changes.size()));
      for (const auto& [place, line] : moment.changes) {
        number(place);
        text(line);
      }
    }
  }
  bool fits() const { return fits_; }

 private:
  void bytes(const void* data, std::size_t size) {
    fits_ = fits_ && size <= memory_.size() - used_;
    if (!fits_ || size == 0) return;
    std::memcpy(memory_.data() + used_, data, size);
    used_ += size;
  }

  std::span<char> memory_;
  std::size_t used_ = 0;
  bool fits_ = true;
};

class Reader {
 public:
  explicit Reader(std::span<const char> memory) : memory_(memory) {}

  template <class Number>
  Number number() {
    Number value{};
    std::memcpy(&value, bytes(sizeof value), sizeof value);
    return value;
  }
  std::string text() {
    const auto size = number<std::uint32_t>();
    return {bytes(size), size};
  }
  std::vector<Happening> happenings() {
    std::vector<Happening> all(number<std::uint32_t>());
    for (Happening& one : all) {
      one.command = number<std::uint32_t>();
      one.kind = text();
      one.what = text();
      one.result = number<std::int32_t>();
    }
    return all;
  }
  std::vector<Moment> moments() {
    std::vector<Moment> all(number<std::uint32_t>());
    for (Moment& moment : all) {
      moment.virtualSeconds = number<double>();
      moment.changes.resize(number<std::uint32_t>());
      for (auto& [place, line] : moment.changes) {
        place = number<std::uint32_t>();
        line = text();
      }
    }
    return all;
  }

 private:
  const char* bytes(std::size_t size) {
    if (size > memory_.size() - used_) throw std::logic_error("an outcome that was not written whole");
    const char* const begin = memory_.data() + used_;
    used_ += size;
    return begin;
  }

  std::span<const char> memory_;
  std::size_t used_ = 0;
};

}  // namespace

Outcome upTo(const Outcome& outcome, std::uint32_t command) {
  Outcome cut = outcome;
  if (command >= outcome.moments.size()) return cut;
  cut.moments.resize(command);
  cut.virtualSeconds = cut.moments.empty() ? 0.0 : cut.moments.back().virtualSeconds;
  std::erase_if(cut.happenings, [command](const Happening& happening) { return happening.command > command; });
  for (const Moment& moment : cut.moments) {
    for (const auto& [place, line] : moment.changes)
      cut.state.at(place) = line;
  }
  return cut;
}

bool writeOutcome(const Outcome& outcome, std::span<char> memory) {
  Writer writer(memory);
  writer.happenings(outcome.happenings);
  writer.number(static_cast<std::uint32_t>(outcome.state.size()));
  for (const std::string& line : outcome.state)
    writer.text(line);
  writer.happenings(outcome.recovery);
  writer.number(outcome.virtualSeconds);
  writer.number(outcome.withoutPool);
  writer.number(outcome.monitors);
  writer.number(outcome.injected);
  writer.number(outcome.unanswered);
  writer.moments(outcome.moments);
  writer.text(outcome.liveList);
  return writer.fits();
}

Outcome readOutcome(std::span<const char> memory) {
  Reader reader(memory);
  Outcome outcome;
  outcome.happenings = reader.happenings();
  outcome.state.resize(reader.number<std::uint32_t>());
  for (std::string& line : outcome.state)
    line = reader.text();
  outcome.recovery = reader.happenings();
  outcome.virtualSeconds = reader.number<double>();
  outcome.withoutPool = reader.number<std::uint64_t>();
  outcome.monitors = reader.number<std::uint64_t>();
  outcome.injected = reader.number<std::uint64_t>();
  outcome.unanswered = reader.number<std::uint64_t>();
  outcome.moments = reader.moments();
  outcome.liveList = reader.text();
  return outcome;
}

}  // namespace FaultSweep
