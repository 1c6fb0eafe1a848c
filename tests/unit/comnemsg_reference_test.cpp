#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include "comnemsg.h"
#include "message_model.h"
#include "recording_test.h"
#include "string_references.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::CComNEMsg;

class MessageAndModel {
 public:
  MessageAndModel() : m_message(std::make_unique<CComNEMsg>(0)) {}

  void Step(RandomTexts& random) {
    switch (random.Below(8)) {
      case 0:
        return SetTo(Data(random));
      case 1:
      case 2:
        return Append(Data(random));
      case 3:
        return SetToPart(random);
      case 4:
        return AppendPart(random);
      case 5:
        return Resize(Length(random));
      case 6:
        return Replace(random);
      default:
        return Empty();
    }
  }

  void Compare(const RecordingHost& host) const {
    ASSERT_EQ(m_message->usMsgLen, m_model.body.size());
    ASSERT_EQ(m_message->m_nMsgBufSize, m_model.size);
    ASSERT_TRUE(std::equal(m_model.body.begin(), m_model.body.end(), m_message->m_pMsg));
    ASSERT_EQ(m_message->m_pMsg[m_model.body.size()], '\0');
    ASSERT_EQ(host.lines.size(), m_model.warnings);
  }

 private:
  static size_t Length(RandomTexts& random) {
    constexpr size_t EDGES[] = {0, 1, 1022, 1023, 1024, 1025, 2048, 65533, 65534, 65535, 66558, 70000};
    return random.Below(3) == 0 ? EDGES[random.Below(std::size(EDGES))]
                                : random.Below(random.Below(4) == 0 ? 40000 : 600);
  }

  static std::string Data(RandomTexts& random) {
    std::string data(Length(random), '\0');
    unsigned char next = static_cast<unsigned char>(random.Below(256));
    for (char& c : data)
      c = static_cast<char>(next++);
    return data;
  }

  void SetTo(const std::string& data) {
    m_message->SetMsg(data.data(), static_cast<unsigned int>(data.size()));
    m_model.Set(data);
  }

  void Append(const std::string& data) {
    m_message->AddMsg(data.data(), static_cast<unsigned int>(data.size()));
    m_model.Add(data);
  }

  void SetToPart(RandomTexts& random) {
    const size_t at = random.Below(m_model.body.size() + 1);
    const std::string part = m_model.body.substr(at);
    m_message->SetMsg(m_message->m_pMsg + at, static_cast<unsigned int>(part.size()));
    m_model.Set(part);
  }

  void AppendPart(RandomTexts& random) {
    const size_t at = random.Below(m_model.body.size() + 1);
    const std::string part = m_model.body.substr(at);
    m_message->AddMsg(m_message->m_pMsg + at, static_cast<unsigned int>(part.size()));
    m_model.Add(part);
  }

  void Resize(size_t length) {
    m_message->SetBufLen(static_cast<unsigned int>(length));
    m_model.SetBufLen(length);
  }

  // Goes on with a copy, or with one that was assigned to.
  void Replace(RandomTexts& random) {
    std::unique_ptr<CComNEMsg> next;
    if (random.Below(2) == 0) {
      next = std::make_unique<CComNEMsg>(*m_message);
      m_model.size = 1024;
    } else {
      const size_t size = random.Below(3000) + 1;
      next = std::make_unique<CComNEMsg>(static_cast<unsigned int>(size));
      *next = *m_message;
      m_model.size = size;
    }
    m_model.Set(std::string(m_model.body));
    m_message = std::move(next);
  }

  void Empty() {
    m_message->EmptyMsg();
    m_model.body.clear();
    ASSERT_TRUE(std::all_of(m_message->m_pMsg, m_message->m_pMsg + m_model.size, [](char c) { return c == '\0'; }));
  }

  std::unique_ptr<CComNEMsg> m_message;
  MessageModel m_model;
};

class ComNEMsgReference : public RecordingTest {};

TEST_F(ComNEMsgReference, RandomOperations) {
  RandomTexts random(31);
  for (int run = 0; run < 300; ++run) {
    host.Reset();
    MessageAndModel both;
    for (int step = 0; step < 30; ++step) {
      ASSERT_NO_FATAL_FAILURE(both.Step(random));
      ASSERT_NO_FATAL_FAILURE(both.Compare(host)) << "run " << run << ", step " << step;
    }
  }
}

}  // namespace
}  // namespace VARNEL_TEST
