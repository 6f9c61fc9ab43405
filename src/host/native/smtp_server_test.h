#pragma once

#define ASIO_STANDALONE

#include <asio.hpp>
#include <atomic>
#include <istream>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace zento {

// A mail server on this machine for tests, one connection after the other.
class SmtpServer {
 public:
  enum class Habit {
    kTakesAll,
    kNeverAnswers,  // not even with a greeting
    kRefusesReceiver,
    kDropsInMessage,  // goes away after the message's first line
  };
  struct Received {
    std::string sender;  // as it came behind MAIL FROM:
    std::vector<std::string> receivers;
    std::string login;    // base 64, of AUTH PLAIN
    std::string message;  // doubled dots undone
  };

  explicit SmtpServer(Habit habit)
      : habit_(habit),
        acceptor_(io_, {asio::ip::make_address("127.0.0.1"), 0}),
        thread_([this] { Serve(); }) {}
  ~SmtpServer() {
    stopping_ = true;
    asio::error_code ignored;
    asio::ip::tcp::socket knock(io_);
    knock.connect(acceptor_.local_endpoint(), ignored);
    thread_.join();
  }
  SmtpServer(const SmtpServer&) = delete;
  SmtpServer& operator=(const SmtpServer&) = delete;

  int port() const { return acceptor_.local_endpoint().port(); }
  // Mails taken over so far.
  std::vector<Received> mails() {
    const std::lock_guard lock(mutex_);
    return mails_;
  }
  // Every line clients have sent outside messages.
  std::string commands() {
    const std::lock_guard lock(mutex_);
    return commands_;
  }

 private:
  using Stream = asio::ip::tcp::iostream;

  void Serve() {
    while (!stopping_) {
      Stream client;
      asio::error_code failed;
      acceptor_.accept(client.socket(), failed);
      if (failed || stopping_) continue;
      client.socket().set_option(asio::ip::tcp::no_delay(true), failed);
      Talk(client);
    }
  }

  static bool ReadLine(Stream& client, std::string& line) {
    if (!std::getline(client, line)) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return true;
  }

  static void Say(Stream& client, const std::string& line) {
    client << line << "\r\n" << std::flush;
  }

  void Talk(Stream& client) {
    // A client that hangs is a failed test, not a hanging one.
    client.expires_after(std::chrono::seconds(20));
    std::string line;
    if (habit_ == Habit::kNeverAnswers) {
      while (ReadLine(client, line)) {
      }
      return;
    }
    Received mail;
    Say(client, "220 test.invalid ready");
    while (ReadLine(client, line)) {
      {
        const std::lock_guard lock(mutex_);
        commands_ += line + "\n";
      }
      if (line.rfind("EHLO", 0) == 0) {
        client << "250-test.invalid\r\n";
        Say(client, "250 AUTH PLAIN");
      } else if (line.rfind("AUTH PLAIN", 0) == 0) {
        if (line.size() <= 11) {
          Say(client, "334 ");
          ReadLine(client, mail.login);
        } else {
          mail.login = line.substr(11);
        }
        Say(client, "235 welcome");
      } else if (line.rfind("MAIL FROM:", 0) == 0) {
        mail.sender = line.substr(10);
        Say(client, "250 ok");
      } else if (line.rfind("RCPT TO:", 0) == 0) {
        mail.receivers.push_back(line.substr(8));
        Say(client, habit_ == Habit::kRefusesReceiver ? "550 5.1.1 nobody of that name" : "250 ok");
      } else if (line == "DATA") {
        Say(client, "354 go on");
        if (!ReadMessage(client, mail.message)) return;
        const std::lock_guard lock(mutex_);
        mails_.push_back(std::exchange(mail, {}));
        Say(client, "250 taken");
      } else if (line == "QUIT") {
        Say(client, "221 bye");
        return;
      } else {
        Say(client, "502 what?");
      }
    }
  }

  bool ReadMessage(Stream& client, std::string& message) {
    for (std::string line; ReadLine(client, line);) {
      if (habit_ == Habit::kDropsInMessage) return false;
      if (line == ".") return true;
      message += line.substr(!line.empty() && line[0] == '.' ? 1 : 0) + "\r\n";
    }
    return false;
  }

  const Habit habit_;
  asio::io_context io_;
  asio::ip::tcp::acceptor acceptor_;
  std::mutex mutex_;
  std::vector<Received> mails_;
  std::string commands_;
  std::atomic<bool> stopping_ = false;
  std::thread thread_;
};

}  // namespace zento
