#include "cli/window_options.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <limits>
#include <optional>

#include "cli/option_values.h"
#include "core/tables.h"
#include "host/controls.h"
#include "text/number.h"
#include "text/status.h"

namespace zento {
namespace {

using enum OptionKind;
using Given = std::vector<GivenOption>;

std::string Text(std::string_view text) {
  return std::string(text);
}

Status Refuse(const WindowOption& option, const std::string& value, const std::string& why) {
  return Status::Failure(Text(option.name) + ": '" + value + "' is not " + why);
}

bool IsThere(const TrackStore& tracks, int track) {
  return !tracks.Record(track).IsEmpty();
}

// The value of the only option of a kind; null when it was not given.
const GivenOption* Only(const Given& given, OptionKind kind) {
  const auto found = std::ranges::find_if(
      given, [kind](const GivenOption& one) { return one.option->kind == kind; });
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
  std::erase_if(all, [&](int track) { return XIsTime(tracks.Record(track).Mode); });
  return all;
}

std::string HelpOf(const WindowOption& option) {
  std::string help(option.help);
  for (const std::string_view word : option.words) {
    help += (word == option.words.front() ? ": " : ", ") + std::string(word);
  }
  if (option.per_track) help += "; TRACK=" + std::string(option.value) + " for one track only";
  return help;
}

class WindowFiller {
 public:
  WindowFiller(Form& form, const TrackStore& tracks, const WindowCommand& command,
               std::vector<std::string>& notes)
      : form_(form), tracks_(tracks), command_(command), notes_(notes) {}

  Status Enter(const Given& given);

 private:
  Result<std::vector<int>> UsedTracks(const Given& given) const;
  Result<int> ShownTrack(const Given& given, const std::vector<int>& used) const;
  Status CheckUses(const std::vector<int>& used);
  Status EnterForTrack(const Given& given, int track);
  const WindowOption* ShownOption() const;
  Status ShowTrack(int track);

  Status Put(const WindowOption& option, const std::string& value);
  Status PutNumber(const WindowOption& option, const std::string& value);
  Status PutChoice(const WindowOption& option, const std::string& value);
  Status PutPoints(const WindowOption& option, const std::string& value);
  Status PutIndex(const WindowOption& option, const std::string& value);
  Status Set(std::string_view control, const std::string& value);
  Status Dial(std::string_view box, std::string_view arrows, std::int32_t target);
  Result<Control*> Find(std::string_view control) const;

  Form& form_;
  const TrackStore& tracks_;
  const WindowCommand& command_;
  std::vector<std::string>& notes_;
};

Status WindowFiller::Enter(const Given& given) {
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
  for (const WindowOption& option : command_.options) {
    if (option.per_track || option.kind == kShownTrack || option.kind == kUsedTracks) continue;
    for (const GivenOption& one : given) {
      if (one.option != &option) continue;
      if (Status put = Put(option, one.value); !put.ok()) return put;
    }
  }
  return Status::Ok();
}

// The tracks that options of every track are meant for: those asked for, else those that the file
// says; of a window for one track, none.
Result<std::vector<int>> WindowFiller::UsedTracks(const Given& given) const {
  const bool many = std::ranges::any_of(
      command_.options, [](const WindowOption& option) { return option.kind == kUsedTracks; });
  if (!many) return std::vector<int>();
  const GivenOption* asked = Only(given, kUsedTracks);
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
  if (!list) return Refuse(*asked->option, asked->value, "all, or tracks such as 0,2-5");
  for (const int track : *list) {
    if (!IsThere(tracks_, track) || XIsTime(tracks_.Record(track).Mode)) {
      return Status::Failure("track " + PlainNumber(track) + " cannot be used: it is empty or a " +
                             "potential step");
    }
  }
  return *list;
}

Result<int> WindowFiller::ShownTrack(const Given& given, const std::vector<int>& used) const {
  const GivenOption* asked = Only(given, kShownTrack);
  if (asked == nullptr) {
    if (ShownOption() == nullptr) return 0;
    if (Only(given, kUsedTracks) != nullptr && !used.empty()) return used.front();
    const std::vector<int> all = AllTracks(tracks_);
    if (all.empty()) return Status::Failure("the file holds no track");
    return all.front();
  }
  const auto track = ParseWhole(asked->value);
  if (!track || *track < 0 || *track >= kTracks) {
    return Refuse(*asked->option, asked->value, "a track from 0 to 20");
  }
  if (!IsThere(tracks_, *track)) {
    return Status::Failure("track " + asked->value + " is empty");
  }
  return *track;
}

Status WindowFiller::CheckUses(const std::vector<int>& used) {
  const auto option = std::ranges::find(command_.options, kUsedTracks, &WindowOption::kind);
  for (const int track : AllWithPotential(tracks_)) {
    if (Status shown = ShowTrack(track); !shown.ok()) return shown;
    const bool use = std::ranges::find(used, track) != used.end();
    if (Status set = Set(option->control, use ? "1" : "0"); !set.ok()) return set;
  }
  return Status::Ok();
}

// What was said for every track first, so that what was said for this one has the last word.
Status WindowFiller::EnterForTrack(const Given& given, int track) {
  bool shown = false;
  for (const bool for_this : {false, true}) {
    for (const GivenOption& one : given) {
      if (!one.option->per_track) continue;
      const TrackValue value = SplitTrackValue(one.value);
      if (value.track && (*value.track < 0 || *value.track >= kTracks)) {
        return Refuse(*one.option, one.value, "TRACK=VALUE with a track from 0 to 20");
      }
      if (value.track.has_value() != for_this || value.track.value_or(track) != track) continue;
      if (!shown) {
        if (Status now = ShowTrack(track); !now.ok()) return now;
        shown = true;
      }
      if (Status put = Put(*one.option, value.value); !put.ok()) return put;
    }
  }
  return Status::Ok();
}

// Null when the window shows the main window's track.
const WindowOption* WindowFiller::ShownOption() const {
  const auto option = std::ranges::find(command_.options, kShownTrack, &WindowOption::kind);
  return option == command_.options.end() ? nullptr : &*option;
}

Status WindowFiller::ShowTrack(int track) {
  const WindowOption* option = ShownOption();
  return option == nullptr ? Status::Ok() : Set(option->control, PlainNumber(track));
}

Status WindowFiller::Put(const WindowOption& option, const std::string& value) {
  if (!option.switch_control.empty()) {
    Status switched = Set(option.switch_control, PlainNumber(option.switch_index));
    if (!switched.ok()) return switched;
  }
  switch (option.kind) {
    case kNumber:
      return PutNumber(option, value);
    case kChoice:
      return PutChoice(option, value);
    case kPoints:
      return PutPoints(option, value);
    case kIndex:
      return PutIndex(option, value);
    case kText:
      return Set(option.control, value);
    case kCheck:
      return option.control.empty() ? Status::Ok() : Set(option.control, "1");
    case kShownTrack:
    case kUsedTracks:
      break;
  }
  return Status::Ok();
}

Status WindowFiller::PutNumber(const WindowOption& option, const std::string& value) {
  const auto number = ParseStrict(value);
  if (!number) return Refuse(option, value, "a number");
  if (Status set = Set(option.control, value); !set.ok()) return set;
  const std::string became = Find(option.control).value()->Value();
  if (ParseLenient(became) != *number) {
    notes_.push_back(Text(option.name) + ": " + value + " became " + became);
  }
  return Status::Ok();
}

Status WindowFiller::PutChoice(const WindowOption& option, const std::string& value) {
  const auto word = std::ranges::find(option.words, value);
  if (word != option.words.end()) {
    return Set(option.control, PlainNumber(word - option.words.begin()));
  }
  std::string words = "one of";
  for (const std::string_view one : option.words) words += " " + Text(one);
  return Refuse(option, value, words);
}

Status WindowFiller::PutPoints(const WindowOption& option, const std::string& value) {
  const auto range = ParseIndexRange(value);
  if (!range) return Refuse(option, value, "FIRST:LAST");
  constexpr std::int32_t kEnd = std::numeric_limits<std::int32_t>::max();
  // A window may draw what is chosen at every step of its arrows: with the start at the end of the
  // track that is next to nothing.
  if (Status set = Set("txtStart", PlainNumber(kEnd)); !set.ok()) return set;
  if (Status set = Dial("txtEnd", "updEnd", range->last.value_or(kEnd)); !set.ok()) return set;
  if (Status set = Set("txtStart", PlainNumber(range->first.value_or(0))); !set.ok()) return set;
  const auto note = [&](const char* box, const std::optional<std::int32_t>& asked) {
    const std::string became = Find(box).value()->Value();
    if (!asked || became == PlainNumber(*asked)) return;
    notes_.push_back(Text(option.name) + ": point " + PlainNumber(*asked) + " became " + became);
  };
  note("txtStart", range->first);
  note("txtEnd", range->last);
  return Status::Ok();
}

Status WindowFiller::PutIndex(const WindowOption& option, const std::string& value) {
  const auto index = ParseWhole(value);
  if (!index || *index < 0) return Refuse(option, value, "a whole number from 0 on");
  if (Status dialled = Dial(option.control, option.arrows, *index); !dialled.ok()) return dialled;
  const std::string became = Find(option.control).value()->Value();
  if (became != PlainNumber(*index)) {
    notes_.push_back(Text(option.name) + ": " + value + " became " + became);
  }
  return Status::Ok();
}

Status WindowFiller::Set(std::string_view control, const std::string& value) {
  const auto found = Find(control);
  return found.ok() ? found.value()->UserSet(value) : found.status();
}

// Types an index where it can be typed, and steps to what typing does not reach.
Status WindowFiller::Dial(std::string_view box, std::string_view arrows, std::int32_t target) {
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

Result<Control*> WindowFiller::Find(std::string_view control) const {
  Control* found = form_.Find(control);
  if (found == nullptr) {
    return Status::Failure(form_.name() + " has no control " + Text(control));
  }
  return found;
}

}  // namespace

Status EnterOptions(Form& form, const TrackStore& tracks, const WindowCommand& command,
                    const std::vector<GivenOption>& given, std::vector<std::string>& notes) {
  return WindowFiller(form, tracks, command, notes).Enter(given);
}

Result<std::vector<GivenOption>> ParseOptions(const WindowCommand& command,
                                              const std::vector<std::string>& words) {
  std::vector<GivenOption> given;
  for (std::size_t i = 0; i < words.size(); i += 2) {
    const auto option = std::ranges::find(command.options, words[i], &WindowOption::name);
    if (option == command.options.end() || i + 1 == words.size()) {
      return Status::Failure(std::string(command.name) + ": " + words[i] +
                             (option == command.options.end() ? " is no option" : " has no value"));
    }
    given.push_back({&*option, words[i + 1]});
  }
  return given;
}

void OptionValues::AddTo(CLI::App& command, std::span<const WindowOption> options) {
  options_ = options;
  values_.resize(options.size());
  checked_.resize(options.size());
  for (std::size_t i = 0; i < options.size(); ++i) {
    const WindowOption& option = options[i];
    const std::string name(option.name);
    if (option.kind == OptionKind::kCheck) {
      command.add_flag_callback(
          name, [this, i] { checked_[i] = 1; }, HelpOf(option));
      continue;
    }
    auto* added = command.add_option(name, values_[i], HelpOf(option));
    added->type_name(std::string(option.value))->allow_extra_args(false);
    if (!option.per_track) added->expected(1);
    if (option.required) added->required();
  }
}

std::vector<GivenOption> OptionValues::Given() const {
  std::vector<GivenOption> given;
  for (std::size_t i = 0; i < options_.size(); ++i) {
    if (checked_[i] != 0) given.push_back({&options_[i], {}});
    for (const std::string& value : values_[i]) given.push_back({&options_[i], value});
  }
  return given;
}

}  // namespace zento
