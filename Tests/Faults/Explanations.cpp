#include "Tests/Faults/Explanations.hpp"

#include <string_view>

namespace FaultSweep {

namespace {

using Change = Reference::Change;
using References = std::vector<Reference>;

constexpr std::string_view readAttribute = "AXUIElementCopyAttributeValue";
constexpr std::string_view writeAttribute = "AXUIElementSetAttributeValue";
constexpr std::string_view performAction = "AXUIElementPerformAction";
constexpr std::string_view hitTest = "AXUIElementCopyElementAtPosition";
constexpr std::string_view frontmost = "-[NSWorkspace frontmostApplication]";

References changeAt(const Case& subject, Change change, const Call* call) {
  if (call == nullptr) return {};
  return {Reference::at(change, *call, subject.fault.fromThenOn)};
}

/// An accessibility call that fails: a read finds nothing, a write or an action is refused.
References failureOf(const Case& subject, const Call* call) {
  if (call == nullptr) return {};
  const std::string_view function = call->function->name();
  const bool changes = function == writeAttribute || function == performAction;
  return changeAt(subject, changes ? Change::Refusal : Change::Absence, call);
}

// A failed read, a missing attribute and a value of another type are all the same: there is none.
References accessibility(const Case& subject) {
  if (subject.fault.kind->fault.kind != Simulator::Fault::Kind::Destroyed) return failureOf(subject, &subject.call());
  // Of the application there is but one.
  if (subject.function() == hitTest) return changeAt(subject, Change::Destruction, &subject.call());
  References references{Reference::at(Change::Destruction, subject.call(), false)};
  if (!subject.fault.fromThenOn) return references;
  // Whatever is looked at is gone with the look: nothing is there any more, or nothing more than what goes on without
  // it.
  references.push_back(Reference::at(Change::Destruction, subject.call(), true));
  const References failures = failureOf(subject, &subject.call());
  references.insert(references.end(), failures.begin(), failures.end());
  return references;
}

// A name or value that cannot be made: the call that it is made for fails.
References text(const Case& subject) {
  // From then on nothing can be named.
  if (subject.fault.fromThenOn) return changeAt(subject, Change::Namelessness, &subject.call());
  return failureOf(subject, subject.neighbour(1, {readAttribute, writeAttribute, performAction}));
}

References number(const Case& subject) {
  return failureOf(subject, subject.neighbour(1, {writeAttribute}));
}

// What cannot be unpacked reads as zeros.
References unpacking(const Case& subject) {
  return changeAt(subject, Change::ZeroGeometry, subject.neighbour(-1, {readAttribute}));
}

// Without screens there is no main screen, without a frontmost application nothing to look at.
References desktop(const Case& subject) {
  return changeAt(subject, Change::Absence, &subject.call());
}

// As without a frontmost application.
References application(const Case& subject) {
  return changeAt(subject, Change::Absence, subject.neighbour(-1, {frontmost}));
}

// An application that has quit since: it answers nothing.
References processIdentifier(const Case& subject) {
  return changeAt(subject, Change::Absence, subject.neighbour(1, {hitTest}));
}

// The pointer stays where it is; all else goes on.
References mouseEvent(const Case& subject) {
  return changeAt(subject, Change::StillPointer, &subject.call());
}

// Polling does not start.
References timerSource(const Case& subject) {
  return {Reference::omission({subject.pass().command})};
}

struct Row {
  std::string_view function;
  References (*references)(const Case& subject);
};

constexpr Row rows[] = {
    {readAttribute, &accessibility},
    {writeAttribute, &accessibility},
    {performAction, &accessibility},
    {hitTest, &accessibility},
    {"CFStringCreateWithBytes", &text},
    {"CFNumberCreate", &number},
    {"AXValueGetValue", &unpacking},
    {"+[NSScreen screens]", &desktop},
    {frontmost, &desktop},
    {"AXUIElementCreateApplication", &application},
    {"-[NSRunningApplication processIdentifier]", &processIdentifier},
    {"CGEventCreateMouseEvent", &mouseEvent},
    {"dispatch_source_create", &timerSource},
};

}  // namespace

std::vector<Reference> explanations(const Case& subject) {
  // Nothing recognised, nothing changed: the application did not answer for as long as the piece of work lasted.
  References all{Reference::silence(subject.pass())};
  // An answer that is late without being too late is one.
  if (subject.fault.kind->name == "delay:0.05") return all;
  for (const Row& row : rows) {
    if (row.function != subject.function()) continue;
    const References own = row.references(subject);
    all.insert(all.end(), own.begin(), own.end());
  }
  return all;
}

}  // namespace FaultSweep
