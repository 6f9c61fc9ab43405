#include "core/track_keys.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <variant>

#include "core/one_line.h"
#include "core/track_store.h"
#include "text/codepage.h"
#include "text/number.h"

namespace zento {
namespace {

struct Vertex {
  std::size_t index;
};
using R = TrackRecord;
using Field = std::variant<std::int32_t R::*, double R::*, std::string R::*, Vertex>;

struct Key {
  std::string_view name;
  Field field;
};

// In the order of the file.
constexpr Key kWritten[] = {
    {"Mode", &R::Mode},
    {"Title", &R::Title},
    {"MeasTime", &R::MeasTime},
    {"Scanrate", &R::Scanrate},
    {"V1st", Vertex{0}},
    {"V2nd", Vertex{1}},
    {"V3rd", Vertex{2}},
    {"Vxmax", &R::Vxmax},
    {"Vymax", &R::Vymax},
    {"Vxmin", &R::Vxmin},
    {"Vymin", &R::Vymin},
    {"MaxTime", &R::MaxTime},
    {"RingXValue", &R::RingXValue},
    {"RPM", &R::RPM},
    {"pnum", &R::pnum},
    {"Conc", &R::Conc},
    {"Area", &R::Area},
    {"Weight", &R::Weight},
    {"ref", &R::ref},
    {"ne", &R::ne},
    {"DiskYscale", &R::DiskYscale},
    {"RingYscale", &R::RingYscale},
    {"TimeRecording", &R::TimeRecording},
    {"pH", &R::pH},
};
// Understood, but not written.
constexpr Key kReadOnly[] = {{"VoltStep", &R::VoltStep}, {"StepTime", &R::StepTime}};

const Key* FindKey(std::string_view name) {
  const auto matches = [&](const Key& key) { return key.name == name; };
  if (const Key* key = std::find_if(std::begin(kWritten), std::end(kWritten), matches);
      key != std::end(kWritten)) {
    return key;
  }
  const Key* key = std::find_if(std::begin(kReadOnly), std::end(kReadOnly), matches);
  return key != std::end(kReadOnly) ? key : nullptr;
}

// The field as an lvalue, of a const or a changeable record.
template <typename Record, typename Visitor>
void VisitField(Record& record, const Field& field, Visitor visitor) {
  std::visit(
      [&](auto member) {
        if constexpr (std::is_same_v<decltype(member), Vertex>) {
          visitor(record.V[member.index]);
        } else {
          visitor(record.*member);
        }
      },
      field);
}

struct Setter {
  std::string_view value;
  void operator()(std::string& field) const { field = value; }
  void operator()(double& field) const { field = ParseLenient(value); }
  void operator()(std::int32_t& field) const { field = ToLong(ParseLenient(value)); }
};

struct Writer {
  std::string& out;
  void operator()(const std::string& field) const { out += MakeValidUtf8(OneLine(field)); }
  void operator()(double field) const { out += SignedNumber(field); }
  void operator()(std::int32_t field) const { out += SignedNumber(field); }
};

}  // namespace

void ApplyTrackKey(TrackRecord& record, std::string_view key, std::string_view value) {
  const Key* found = FindKey(key);
  if (found == nullptr) return;
  VisitField(record, found->field, Setter{value});
  record.pnum = std::clamp(record.pnum, 0, kMaxPoints);
}

void AppendTrackHeader(std::string& out, int number, const TrackRecord& record) {
  out.append("DataNum=").append(SignedNumber(number)).append("\r\n");
  for (const Key& key : kWritten) {
    out.append(key.name).append("=");
    VisitField(record, key.field, Writer{out});
    out += "\r\n";
  }
}

}  // namespace zento
