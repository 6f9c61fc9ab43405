#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/event_loop.h"
#include "host/host.h"
#include "host/virtual/memory_services.h"
#include "host/virtual/virtual_dialogs.h"
#include "program/main_program.h"

namespace zento {

// A program without a screen: how much of it, and what it runs on.
struct HeadlessOptions {
  enum class Time {
    kVirtual,  // passes only in waits; no sound, and mails are kept instead of sent
    kReal,     // as on the wall
  };

  MainOptions program = {};
  Time time = Time::kVirtual;
  // Null: those of this machine. Else they must outlive the program.
  Files* files = nullptr;
  // Files are only read: what the program writes stays in memory and goes with it, so that a
  // program can be tried in a person's home without leaving a trace there.
  bool dry = false;
  // The system's requests to end the program end its waits early and are told by
  // Termination::Requested. One such program lives at a time.
  bool interruptible = false;
};

// The whole program, or some of its windows, for command line and tests. Questions are answered
// from a queue, the clipboard is its own.
class HeadlessProgram {
 public:
  // Opens nothing and writes nothing.
  explicit HeadlessProgram(HeadlessOptions options);
  ~HeadlessProgram();

  // See MainProgram::Start.
  Status Start() { return program_.Start(); }

  MainProgram& program() { return program_; }
  Workstation& workstation() { return program_.workstation(); }
  Host& host() { return machine_->host(); }
  Desktop& desktop() { return host().desktop; }
  VirtualDialogs& dialogs() { return machine_->dialogs(); }
  EventLoop& loop() { return machine_->loop(); }
  // Where mails end up in virtual time; null in real time, which sends them.
  MemoryMail* kept_mails() { return machine_->kept_mails(); }

  // The message boxes shown since the last call, after what is due now has run.
  std::vector<std::string> TakeMessages();

 private:
  // What stands for the computer and the person in front of it.
  class Machine {
   public:
    virtual ~Machine() = default;
    virtual Host& host() = 0;
    virtual VirtualDialogs& dialogs() = 0;
    virtual EventLoop& loop() = 0;
    virtual MemoryMail* kept_mails() = 0;
  };
  class VirtualMachine;
  class RealMachine;
  static std::unique_ptr<Machine> MakeMachine(const HeadlessOptions& options);

  std::unique_ptr<Machine> machine_;
  MainProgram program_;
};

}  // namespace zento
