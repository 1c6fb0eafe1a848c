// Binary messages: a header in network order and a body that grows.
#include <ace/Message_Block.h>
#include <arpa/inet.h>
#include <comnemsg.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "bench.h"

namespace VARNEL_BENCH {

namespace {

using namespace VARNEL_COMMON;

class Ours {
 public:
  void Set(std::string_view data) { m_message.SetMsg(data.data(), static_cast<unsigned int>(data.size())); }
  void Add(std::string_view data) { m_message.AddMsg(data.data(), static_cast<unsigned int>(data.size())); }
  std::string_view Body() const { return {m_message.m_pMsg, m_message.usMsgLen}; }

 private:
  CComNEMsg m_message{0};
};

class Vector {
 public:
  Vector() { m_body.reserve(1024); }
  void Set(std::string_view data) { m_body.assign(data.begin(), data.end()); }
  void Add(std::string_view data) { m_body.insert(m_body.end(), data.begin(), data.end()); }
  std::string_view Body() const { return {m_body.data(), m_body.size()}; }

 private:
  std::vector<char> m_body;
};

class Block {
 public:
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
  ACE_Message_Block m_block{1024};
};

template <typename Message>
auto Setting(std::string_view body) {
  return [body, message = std::make_shared<Message>()] {
    message->Set(body);
    return message->Body();
  };
}

// Builds a new message in each run, after the one of the run before is destroyed.
template <typename Message>
auto Adding(std::string_view piece, size_t count) {
  return [=, message = std::shared_ptr<Message>()]() mutable {
    message.reset();
    message = std::make_shared<Message>();
    for (size_t i = 0; i < count; ++i)
      message->Add(piece);
    return message->Body();
  };
}

auto Memcpy(size_t size) {
  return [body = std::string_view(ReportText(size)), buffer = std::vector<char>(size)]() mutable {
    std::memcpy(buffer.data(), body.data(), body.size());
    benchmark::ClobberMemory();
    return buffer.data();
  };
}

void Add(const std::string& name, size_t count, size_t size) {
  const std::string_view piece = ReportText(size);
  Row("CComNEMsg", name, Adding<Ours>(piece, count))
      .Peer("std::vector", Adding<Vector>(piece, count))
      .Peer("ACE_Message_Block", Adding<Block>(piece, count))
      .Limit("memcpy", Memcpy(count * size));
}

struct Head : CComNEHead {
  Head() {
    ulHeadWord0 = 0x01020304;
    usMsgLen = 0x0B0C;
  }
  Head(const Head&) = default;
};

bool operator==(const Head& a, const Head& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// Converts a fresh copy of a header in each run.
template <typename Convert>
auto Converting(Convert convert) {
  return [convert, filled = Head()] {
    Head head(filled);
    convert(head);
    return head;
  };
}

}  // namespace

void AddComNEMsg() {
  const std::string_view body = ReportText(20);
  Row("CComNEMsg", "SetMsg of 20 B", Setting<Ours>(body))
      .Peer("std::vector", Setting<Vector>(body))
      .Peer("ACE_Message_Block", Setting<Block>(body));
  Add("100 AddMsg of 50 B", 100, 50);
  Add("63 AddMsg of 1 KB", 63, 1024);
  Row("CComNEHead", "ToNetOrder", Converting([](Head& head) { head.ToNetOrder(); }))
      .Peer("htonl and htons", Converting([](Head& head) {
              head.ulHeadWord0 = htonl(head.ulHeadWord0);
              head.ulHeadWord1 = htonl(head.ulHeadWord1);
              head.usHeadShort = htons(head.usHeadShort);
              head.usMsgLen = htons(head.usMsgLen);
              head.ulHeadWord2 = htonl(head.ulHeadWord2);
            }));
}

}  // namespace VARNEL_BENCH
