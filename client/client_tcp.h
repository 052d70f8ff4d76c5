#pragma once
// The concrete session: the packet stream over one TCP connection to the render server. It
// chooses the server address (an explicit one, else the VX2HOST list by client index, else
// "localhost", port 6260 unless given), connects with a 5000 ms time limit and Nagle off, and
// registers its socket with a descriptor-handler registry so that data and disconnects from
// the server arrive as callbacks, on the thread that pumps that registry, without polling.
//
// Reads are buffered: a packet's header and payload come out of one receive when the bytes are
// already there. The thread that makes a request reads its reply itself; the registry's
// callback reads only while no request is waiting (the read lock), and keeps reading while
// whole packets sit in the buffer. A callback never throws: a failure to read or decode is
// logged and treated as the connection being lost. connect throws VXClientException
// ("Vexel connection failed, " and the socket's error); setAsyncRegistry throws it while open.
#include <cstdint>
#include <fstream>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "client/client_stream.h"
#include "foundation/socket.h"

class VXClientTcp : public VXClientStream {
 public:
  static constexpr int kDefaultPort = 6260;
  static constexpr int kTimeLimitMs = 5000;

  // Debug output follows VX2DEBUG: unset is off; a positive number writes to standard error;
  // any other value of four or more characters names a file to write to.
  explicit VXClientTcp(int32_t clientIndex = 0);
  ~VXClientTcp() override;

  void setServerAddress(const std::string& address) override { serverAddress_ = address; }
  // The address connect will use: the explicit one, else from VX2HOST, else "localhost". Empty
  // when the client index names no entry of the VX2HOST list.
  std::string getServerAddress() const override;
  bool isOpen() const override;
  // The host part of the address last connected to.
  const std::string& getConnectedHost() const { return connectedHost_; }
  // The registry the socket joins at the next connect; null means the thread's default one.
  // Not owned. A non-null registry is refused while the session is open.
  void setAsyncRegistry(AFCFDAsyncRegistry* registry);

 protected:
  void request(uint32_t type, const AFCBuffer& payload, uint32_t replyType,
               AFCBuffer& reply) override;
  void connectTransport() override;
  void disconnectTransport() override;
  void readExact(uint8_t* dest, std::size_t count) override;
  void writeAll(const uint8_t* bytes, std::size_t count) override;

 private:
  // The descriptor request of the session: readable data and the peer's close go to it.
  class Socket : public AFCClientSocket {
   public:
    explicit Socket(VXClientTcp& session) : session_(session) {}
    AFCFDAsyncRegistry* getAsyncRegistry() override;

   protected:
    void onReadable() override { session_.onReadable(); }
    void onPeerClosed() override { session_.onServerDisconnected(); }

   private:
    VXClientTcp& session_;
  };

  void setUpDebugOutput();
  // Reads packets while the buffer holds bytes, unless a request is reading.
  void onReadable();
  // A packet could not be read or decoded: logged, and the connection counts as lost.
  void onStreamFailure(const AFCException& e);
  // Refills the empty read buffer with what the socket has (waiting for at least one byte).
  void fillBuffer();
  std::size_t buffered() const { return readEnd_ - readBegin_; }
  // True when the buffer holds at least one whole packet.
  bool packetBuffered() const;

  std::string serverAddress_;
  std::string connectedHost_;
  AFCFDAsyncRegistry* asyncRegistry_ = nullptr;
  std::vector<uint8_t> readBuffer_;
  std::size_t readBegin_ = 0;
  std::size_t readEnd_ = 0;
  // Held by a request for its whole exchange and by the callback while it reads; recursive
  // because a listener called during a request may make a request of its own.
  std::recursive_mutex readLock_;
  std::unique_ptr<std::ofstream> debugFile_;
  Socket socket_{*this};
};
