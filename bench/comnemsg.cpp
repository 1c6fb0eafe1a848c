// Binary messages: a header in network order and a body that grows.
#include <ace/Message_Block.h>
#include <arpa/inet.h>
#include <comnemsg.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "inputs.h"
#include "row.h"
#include "services.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;

constexpr size_t MAX_BODY = 65534;
constexpr size_t FIRST_BUFFER = 1024;

class Ours {
 public:
  explicit Ours(size_t buffer) : m_message(static_cast<unsigned int>(buffer)) {}
  void Set(std::string_view data) { m_message.SetMsg(data.data(), static_cast<unsigned int>(data.size())); }
  void Add(std::string_view data) { m_message.AddMsg(data.data(), static_cast<unsigned int>(data.size())); }
  std::string_view Body() const { return {m_message.m_pMsg, m_message.usMsgLen}; }

 private:
  CComNEMsg m_message;
};

class Vector {
 public:
  explicit Vector(size_t buffer) { m_body.reserve(buffer); }
  void Set(std::string_view data) {
    m_body.clear();
    Add(data);
  }
  void Add(std::string_view data) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(data.data());
    m_body.insert(m_body.end(), bytes, bytes + data.size());
    m_length = static_cast<uint16_t>(m_body.size());
  }
  std::string_view Body() const { return {reinterpret_cast<const char*>(m_body.data()), m_length}; }

 private:
  std::vector<uint8_t> m_body;
  uint16_t m_length = 0;
};

class Block {
 public:
  explicit Block(size_t buffer) : m_block(buffer) {}
  void Set(std::string_view data) {
    m_block.reset();
    Add(data);
  }
  void Add(std::string_view data) {
    if (m_block.space() < data.size()) m_block.size(std::max(m_block.length() + data.size(), 2 * m_block.size()));
    m_block.copy(data.data(), data.size());
  }
  std::string_view Body() const { return {m_block.rd_ptr(), m_block.length()}; }

 private:
  ACE_Message_Block m_block;
};

template <typename Message>
auto Setting(std::string_view body) {
  return [body, message = std::make_shared<Message>(FIRST_BUFFER)] {
    message->Set(body);
    return message->Body();
  };
}

// Puts a new message together in each run; that of the run before is destroyed first.
template <typename Message>
auto Adding(std::string_view body, size_t piece, size_t buffer) {
  return [=, message = std::shared_ptr<Message>()]() mutable {
    message.reset();
    message = std::make_shared<Message>(buffer);
    for (size_t at = 0; at < body.size(); at += piece)
      message->Add(body.substr(at, piece));
    return message->Body();
  };
}

auto Memcpy(std::string_view body) {
  return [body, buffer = std::vector<char>(body.size())]() mutable {
    std::memcpy(buffer.data(), body.data(), body.size());
    benchmark::ClobberMemory();
    return buffer.data();
  };
}

void Set(size_t size) {
  const std::string_view body = ReportText(size);
  Row("CComNEMsg", "SetMsg of " + std::to_string(size) + " B", size, Setting<Ours>(body))
      .Peer("std::vector", Setting<Vector>(body))
      .Peer("ACE_Message_Block", Setting<Block>(body))
      .Limit("memcpy", Memcpy(body));
}

void Add(const std::string& name, size_t piece, size_t buffer) {
  const std::string_view body = ReportText(MAX_BODY);
  Row("CComNEMsg", name, body.size(), Adding<Ours>(body, piece, buffer))
      .Peer("std::vector", Adding<Vector>(body, piece, buffer))
      .Peer("ACE_Message_Block", Adding<Block>(body, piece, buffer))
      .Limit("memcpy", Memcpy(body));
}

struct Head : CComNEHead {
  Head() {
    ulHeadWord0 = 0x01020304;
    ulHeadWord1 = 0x05060708;
    usHeadShort = 0x090A;
    usMsgLen = 0x0B0C;
    ulHeadWord2 = 0x0D0E0F10;
  }
  Head(const Head&) = default;
};

bool operator==(const Head& a, const Head& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// Converts a fresh copy of a head in each run.
template <typename Convert>
auto Converting(Convert convert) {
  return [convert, filled = Head()] {
    Head head(filled);
    convert(head);
    return head;
  };
}

void ToNetOrder() {
  Row("CComNEHead", "ToNetOrder", 0, Converting([](Head& head) { head.ToNetOrder(); }))
      .Peer("htonl and htons", Converting([](Head& head) {
              head.ulHeadWord0 = htonl(head.ulHeadWord0);
              head.ulHeadWord1 = htonl(head.ulHeadWord1);
              head.usHeadShort = htons(head.usHeadShort);
              head.usMsgLen = htons(head.usMsgLen);
              head.ulHeadWord2 = htonl(head.ulHeadWord2);
            }))
      .Limit("memcpy", Converting([](Head&) {}));
}

}  // namespace

void AddComNEMsg() {
  for (const size_t size : {size_t{20}, size_t{1024}, MAX_BODY})
    Set(size);
  Add("AddMsg of 20 B up to 65534 B", 20, FIRST_BUFFER);
  Add("AddMsg of 1 KB up to 65534 B", 1024, FIRST_BUFFER);
  Add("AddMsg of 20 B up to 65534 B, buffer prepared", 20, MAX_BODY);
  Add("AddMsg of 1 KB up to 65534 B, buffer prepared", 1024, MAX_BODY);
  ToNetOrder();
}

}  // namespace VARNEL_BENCH
