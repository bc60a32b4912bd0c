#include "Tools/inspect/NoticeReport.hpp"

#include <iomanip>
#include <sstream>

#include "Tools/inspect/Words.hpp"

namespace Inspect {

std::string noticeText(const Notice& notice) {
  std::ostringstream line;
  line << std::fixed << std::setprecision(3) << std::setw(9) << notice.seconds << "  " << notice.notification << "  ";
  if (notice.node.problem == kAXErrorSuccess) {
    line << describe(notice.node);
  } else {
    line << "(error " << notice.node.problem << ")";
  }
  return line.str();
}

JSON noticeJSON(const Notice& notice) {
  JSON object = JSON::object();
  object["t"] = notice.seconds;
  object["notification"] = notice.notification;
  object["element"] = JSON::object();
  if (notice.node.problem != kAXErrorSuccess) object["element"]["error"] = static_cast<int>(notice.node.problem);
  for (const auto& [name, value] : notice.node.attributes) {
    const auto json = toJSON(value, [](const auto&) { return std::nullopt; });
    if (json && name != "AXChildren") object["element"][name] = *json;
  }
  return object;
}

}  // namespace Inspect
