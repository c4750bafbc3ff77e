#pragma once

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

/// Stands between a store and its server and passes on what they say, until it cuts a connection at a commit. It works
/// for connections that are not encrypted.
class CuttingProxy {
 public:
  enum class Cut {
    none,
    before_commit,          ///< the connection ends, and the server does not get the commit
    after_commit,           ///< the server commits, and the connection ends before its answer
    silence_before_commit,  ///< the server does not get the commit, and the connection stays
    silence_after_commit,   ///< the server commits, and its answer does not come
  };

  explicit CuttingProxy(int server_port);
  ~CuttingProxy();
  CuttingProxy(const CuttingProxy&) = delete;
  CuttingProxy& operator=(const CuttingProxy&) = delete;

  int port() const { return port_; }

  /// Whether new connections succeed after a cut.
  enum class Afterwards { connects, refuses };

  /// What happens at the next commit of any connection, and after it.
  void cut_at_commit(Cut cut, Afterwards afterwards = Afterwards::connects) {
    silence_ended_ = false;
    refuses_after_cut_ = afterwards == Afterwards::refuses;
    cut_ = cut;
  }
  /// Ends the connections that are silent.
  void end_silence() { silence_ended_ = true; }
  /// Whether new connections are ended at once.
  void refuse_connections(bool refuse) { refuses_ = refuse; }

 private:
  using Socket = std::uintptr_t;

  void accept_connections(const std::stop_token& stop);
  void pass_on(Socket client, const std::stop_token& stop);
  bool pass_on_from_client(Socket client, Socket server, bool& silent, const std::stop_token& stop);

  int server_port_;
  int port_ = 0;
  Socket listener_;
  std::atomic<Cut> cut_ = Cut::none;
  std::atomic<bool> refuses_ = false;
  std::atomic<bool> refuses_after_cut_ = false;
  std::atomic<bool> silence_ended_ = false;
  std::vector<std::jthread> connections_;
  std::jthread acceptor_;
};
