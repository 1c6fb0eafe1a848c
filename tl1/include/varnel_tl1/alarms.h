#ifndef VARNEL_TL1_ALARMS_H
#define VARNEL_TL1_ALARMS_H

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <tuple>

#include "message.h"
#include "varnel_export.h"

/// @file
/// The table of active alarms.

namespace VARNEL_TL1 {

/// An alarm as REPT ALM messages report it. Absent values are empty.
struct Alarm {
  std::string source;       ///< as given to Alarms::Add()
  std::string sid;          ///< of the element
  std::string aid;          ///< of the part of the element
  std::string condition;    ///< second positional parameter
  std::string severity;     ///< first positional parameter: CR, MJ, MN; CL once cleared
  std::string effect;       ///< third positional parameter, on service
  std::string raised;       ///< date and time of the header of the message that raised the alarm
  std::string received;     ///< as given to Alarms::Add() with that message
  std::string description;  ///< first parameter of the block after the positional one
};

/// The table of active alarms: raised and not cleared. An alarm is identified by source, SID, AID and condition.
///
/// An object belongs to one thread at a time. Memory exhaustion throws std::bad_alloc; only the first lines of the
/// message are then applied.
class VARNEL_API Alarms {
 public:
  /// What a message changed.
  enum class Change {
    Raised,   ///< a new alarm
    Changed,  ///< another severity, effect or description
    Cleared,  ///< removed from the table
  };

  /// Called for each change; the alarm is valid during the call.
  using ChangeHandler = std::function<void(Change change, const Alarm& alarm)>;

  /// Applies a message. An autonomous REPT ALM message raises or changes one alarm for each of its quoted lines, or
  /// clears it: with severity CL, or with alarm code A and CL among the positional parameters. Other messages, and
  /// alarms that are reported again as they are, change nothing; neither does the clearing of an unknown alarm.
  ///
  /// @param source    names the stream.
  /// @param message   any message.
  /// @param received  when the message was received, in any form; may be empty.
  /// @param onChange  called for each change; may be empty.
  void Add(std::string_view source, const Message& message, std::string_view received = {},
           const ChangeHandler& onChange = {});

  /// Source, SID, AID and condition.
  using Key = std::tuple<std::string, std::string, std::string, std::string>;

  /// @return the active alarms, ordered by source, SID, AID and condition; owned by this object.
  const std::map<Key, Alarm>& Active() const { return m_active; }

 private:
  VARNEL_HIDDEN void Apply(Alarm alarm, bool clears, const ChangeHandler& onChange);

  std::map<Key, Alarm> m_active;
};

/// @param change  the change.
/// @return "raised", "changed" or "cleared"; a constant.
VARNEL_API const char* ChangeName(Alarms::Change change);

}  // namespace VARNEL_TL1

#endif
