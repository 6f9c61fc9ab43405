#include "cli/window_entries.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "cli/option_values.h"
#include "core/tables.h"
#include "host/controls.h"
#include "text/number.h"

namespace zento {
namespace {

using enum EntryKind;
using Given = std::vector<GivenEntry>;

std::string Text(std::string_view text) {
  return std::string(text);
}

Status Refuse(const AnalysisEntry& entry, const std::string& value, const std::string& why) {
  return Status::Failure(Text(entry.option) + ": '" + value + "' is not " + why);
}

bool IsThere(const TrackStore& tracks, int track) {
  return tracks.Record(track).Mode != kModeNone;
}

// The value of the only option of a kind; null when it was not given.
const GivenEntry* Only(const Given& given, EntryKind kind) {
  const auto found = std::ranges::find_if(
      given, [kind](const GivenEntry& one) { return one.entry->kind == kind; });
  return found == given.end() ? nullptr : &*found;
}

std::vector<int> AllTracks(const TrackStore& tracks) {
  std::vector<int> all;
  for (int track = 0; track < kTracks; ++track) {
    if (IsThere(tracks, track)) all.push_back(track);
  }
  return all;
}

// Those that a window can use one potential window on; a file may hold steps besides.
std::vector<int> AllWithPotential(const TrackStore& tracks) {
  std::vector<int> all = AllTracks(tracks);
  std::erase_if(all, [&](int track) { return tracks.Record(track).Mode == kModePS; });
  return all;
}

}  // namespace

Status WindowEntries::Enter(const Given& given) {
  const auto used = UsedTracks(given);
  if (!used.ok()) return used.status();
  const auto shown = ShownTrack(given, used.value());
  if (!shown.ok()) return shown.status();
  if (Only(given, kUsedTracks) != nullptr) {
    if (Status checked = CheckUses(used.value()); !checked.ok()) return checked;
  }
  std::vector<int> edited = used.value();
  if (edited.empty()) edited.push_back(shown.value());
  for (const int track : edited) {
    if (Status entered = EnterForTrack(given, track); !entered.ok()) return entered;
  }
  if (Status set = ShowTrack(shown.value()); !set.ok()) return set;
  if (!command_.fixed_control.empty()) {
    Status fixed = Set(command_.fixed_control, PlainNumber(command_.fixed_index));
    if (!fixed.ok()) return fixed;
  }
  for (const AnalysisEntry& entry : command_.entries) {
    if (entry.per_track || entry.kind == kShownTrack || entry.kind == kUsedTracks) continue;
    for (const GivenEntry& one : given) {
      if (one.entry != &entry) continue;
      if (Status put = Put(entry, one.value); !put.ok()) return put;
    }
  }
  return Status::Ok();
}

// The tracks that options of every track are meant for: those asked for, else those that the file
// says; of a window for one track, none.
Result<std::vector<int>> WindowEntries::UsedTracks(const Given& given) const {
  const bool many = std::ranges::any_of(
      command_.entries, [](const AnalysisEntry& entry) { return entry.kind == kUsedTracks; });
  if (!many) return std::vector<int>();
  const GivenEntry* asked = Only(given, kUsedTracks);
  if (asked == nullptr) {
    std::vector<int> used = AllTracks(tracks_);
    std::erase_if(used, [&](int track) {
      const auto place = static_cast<std::size_t>(track);
      return place >= tracks_.kl.KLUseFlag.size() || tracks_.kl.KLUseFlag[place] != 1;
    });
    return used;
  }
  if (asked->value == "all") return AllWithPotential(tracks_);
  const auto list = ParseNumberList(asked->value, kTracks - 1);
  if (!list) return Refuse(*asked->entry, asked->value, "all, or tracks such as 0,2-5");
  for (const int track : *list) {
    if (!IsThere(tracks_, track) || tracks_.Record(track).Mode == kModePS) {
      return Status::Failure("track " + PlainNumber(track) + " cannot be used: it is empty or a " +
                             "potential step");
    }
  }
  return *list;
}

Result<int> WindowEntries::ShownTrack(const Given& given, const std::vector<int>& used) const {
  const GivenEntry* asked = Only(given, kShownTrack);
  if (asked == nullptr) {
    if (ShownEntry() == nullptr) return 0;
    if (Only(given, kUsedTracks) != nullptr && !used.empty()) return used.front();
    const std::vector<int> all = AllTracks(tracks_);
    if (all.empty()) return Status::Failure("the file holds no track");
    return all.front();
  }
  const auto track = ParseWhole(asked->value);
  if (!track || *track < 0 || *track >= kTracks) {
    return Refuse(*asked->entry, asked->value, "a track from 0 to 20");
  }
  if (!IsThere(tracks_, *track)) {
    return Status::Failure("track " + asked->value + " is empty");
  }
  return *track;
}

Status WindowEntries::CheckUses(const std::vector<int>& used) {
  const auto entry = std::ranges::find(command_.entries, kUsedTracks, &AnalysisEntry::kind);
  for (const int track : AllWithPotential(tracks_)) {
    if (Status shown = ShowTrack(track); !shown.ok()) return shown;
    const bool use = std::ranges::find(used, track) != used.end();
    if (Status set = Set(entry->control, use ? "1" : "0"); !set.ok()) return set;
  }
  return Status::Ok();
}

// What was said for every track first, so that what was said for this one has the last word.
Status WindowEntries::EnterForTrack(const Given& given, int track) {
  bool shown = false;
  for (const bool for_this : {false, true}) {
    for (const GivenEntry& one : given) {
      if (!one.entry->per_track) continue;
      const TrackValue value = SplitTrackValue(one.value);
      if (value.track && (*value.track < 0 || *value.track >= kTracks)) {
        return Refuse(*one.entry, one.value, "TRACK=VALUE with a track from 0 to 20");
      }
      if (value.track.has_value() != for_this || value.track.value_or(track) != track) continue;
      if (!shown) {
        if (Status now = ShowTrack(track); !now.ok()) return now;
        shown = true;
      }
      if (Status put = Put(*one.entry, value.value); !put.ok()) return put;
    }
  }
  return Status::Ok();
}

// Null when the window shows the main window's track.
const AnalysisEntry* WindowEntries::ShownEntry() const {
  const auto entry = std::ranges::find(command_.entries, kShownTrack, &AnalysisEntry::kind);
  return entry == command_.entries.end() ? nullptr : &*entry;
}

Status WindowEntries::ShowTrack(int track) {
  const AnalysisEntry* entry = ShownEntry();
  return entry == nullptr ? Status::Ok() : Set(entry->control, PlainNumber(track));
}

Status WindowEntries::Put(const AnalysisEntry& entry, const std::string& value) {
  if (!entry.switch_control.empty()) {
    Status switched = Set(entry.switch_control, PlainNumber(entry.switch_index));
    if (!switched.ok()) return switched;
  }
  switch (entry.kind) {
    case kNumber:
      return PutNumber(entry, value);
    case kChoice:
      return PutChoice(entry, value);
    case kPoints:
      return PutPoints(entry, value);
    case kIndex:
      return PutIndex(entry, value);
    case kText:
      return Set(entry.control, value);
    case kCheck:
      return entry.control.empty() ? Status::Ok() : Set(entry.control, "1");
    case kShownTrack:
    case kUsedTracks:
      break;
  }
  return Status::Ok();
}

Status WindowEntries::PutNumber(const AnalysisEntry& entry, const std::string& value) {
  const auto number = ParseStrict(value);
  if (!number) return Refuse(entry, value, "a number");
  if (Status set = Set(entry.control, value); !set.ok()) return set;
  const std::string became = Find(entry.control).value()->Value();
  if (ParseLenient(became) != *number) {
    notes_.push_back(Text(entry.option) + ": " + value + " became " + became);
  }
  return Status::Ok();
}

Status WindowEntries::PutChoice(const AnalysisEntry& entry, const std::string& value) {
  const auto word = std::ranges::find(entry.words, value);
  if (word != entry.words.end()) {
    return Set(entry.control, PlainNumber(word - entry.words.begin()));
  }
  std::string words = "one of";
  for (const std::string_view one : entry.words) words += " " + Text(one);
  return Refuse(entry, value, words);
}

Status WindowEntries::PutPoints(const AnalysisEntry& entry, const std::string& value) {
  const auto range = ParseIndexRange(value);
  if (!range) return Refuse(entry, value, "FIRST:LAST");
  constexpr std::int32_t kEnd = std::numeric_limits<std::int32_t>::max();
  // A window may draw what is chosen at every step of its arrows: with the start at the end of the
  // track that is next to nothing.
  if (Status set = Set("txtStart", PlainNumber(kEnd)); !set.ok()) return set;
  if (Status set = Dial("txtEnd", "updEnd", range->last.value_or(kEnd)); !set.ok()) return set;
  if (Status set = Set("txtStart", PlainNumber(range->first.value_or(0))); !set.ok()) return set;
  const auto note = [&](const char* box, const std::optional<std::int32_t>& asked) {
    const std::string became = Find(box).value()->Value();
    if (!asked || became == PlainNumber(*asked)) return;
    notes_.push_back(Text(entry.option) + ": point " + PlainNumber(*asked) + " became " + became);
  };
  note("txtStart", range->first);
  note("txtEnd", range->last);
  return Status::Ok();
}

Status WindowEntries::PutIndex(const AnalysisEntry& entry, const std::string& value) {
  const auto index = ParseWhole(value);
  if (!index || *index < 0) return Refuse(entry, value, "a whole number from 0 on");
  if (Status dialled = Dial(entry.control, entry.arrows, *index); !dialled.ok()) return dialled;
  const std::string became = Find(entry.control).value()->Value();
  if (became != PlainNumber(*index)) {
    notes_.push_back(Text(entry.option) + ": " + value + " became " + became);
  }
  return Status::Ok();
}

Status WindowEntries::Set(std::string_view control, const std::string& value) {
  const auto found = Find(control);
  return found.ok() ? found.value()->UserSet(value) : found.status();
}

// Types an index where it can be typed, and steps to what typing does not reach.
Status WindowEntries::Dial(std::string_view box, std::string_view arrows, std::int32_t target) {
  const auto found = Find(box);
  const auto steps = Find(arrows);
  if (!found.ok()) return found.status();
  if (!steps.ok()) return steps.status();
  const auto* text = dynamic_cast<const TextBox*>(found.value());
  if (text == nullptr || !text->read_only) {
    if (Status set = found.value()->UserSet(PlainNumber(target)); !set.ok()) return set;
  }
  std::optional<std::int32_t> now = ParseWhole(found.value()->Value());
  while (now && *now != target) {
    const int direction = *now < target ? +1 : -1;
    if (Status stepped = steps.value()->UserStep(direction); !stepped.ok()) return stepped;
    const auto next = ParseWhole(found.value()->Value());
    if (!next || (*next - *now) * direction <= 0) break;
    if ((*next - target) * direction > 0) break;  // arrows that leave it out
    now = next;
  }
  return Status::Ok();
}

Result<Control*> WindowEntries::Find(std::string_view control) const {
  Control* found = form_.Find(control);
  if (found == nullptr) {
    return Status::Failure(form_.name() + " has no control " + Text(control));
  }
  return found;
}

}  // namespace zento
