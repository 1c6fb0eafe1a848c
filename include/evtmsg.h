#ifndef VARNEL_EVTMSG_H
#define VARNEL_EVTMSG_H

#include <string>

#include "cmdstr.h"
#include "varnel_export.h"

/// Events: each object stands for one kind of report that is awaited from a network element.
///
/// Offer every incoming report to IsMyEvt() of each waiting object; the one that claims it is asked to HandleReport(),
/// which recognises the shape of the report and reads its numbers. The members are public: the owner sets what is
/// awaited and reads what was found.
///
/// A report is a NUL-terminated text of any bytes. Nothing is logged, nothing throws but std::bad_alloc, and nothing
/// is allocated until a shape is recognised. One object belongs to one thread at a time.
namespace VARNEL_COMMON {

/// Base of all events.
class VARNEL_API CEvtMsg {
 public:
  CEvtMsg();
  CEvtMsg(const CEvtMsg&) = delete;
  CEvtMsg& operator=(const CEvtMsg&) = delete;
  virtual ~CEvtMsg();

  /// @return true when m_strEvtKey, up to its first NUL, matches the whole report as a wildcard pattern (see
  ///         strmcmp()) or occurs in it as it stands; so always with an empty key. False for a null report.
  virtual bool IsMyEvt(const char* report);

  /// @return true; the report is not looked at and may be null.
  virtual bool HandleReport(const char* report);

  /// @return a new object of the same class with every member copied, of m_cmd its text up to the first NUL. The
  ///         caller owns it.
  virtual CEvtMsg* Duplicate();

  std::string m_strEvtKey;     ///< identifies the report: a pattern with "*", or a part of the text
  unsigned int m_dwUserData1;  ///< the owner's; only copied here
  unsigned int m_dwUserData2;  ///< the owner's; only copied here
  unsigned int m_dwNEID;       ///< the element that reports: a TL1 element above 0xFFFFFF, else an MML element
  CCmdStr m_cmd;               ///< the command that belongs to the event; only copied here

 protected:
  /// Copies the members of this class, for Duplicate().
  void CopyMembersTo(CEvtMsg& copy);
};

/// Progress of loading a software package.
class VARNEL_API CVNPackGuageEvt : public CEvtMsg {
 public:
  CVNPackGuageEvt();
  ~CVNPackGuageEvt() override;

  /// Reads done and total from a progress report of the language that m_dwNEID tells.
  ///
  /// @return true when the report is recognised and both numbers are there. After false the numbers may have been
  ///         set in part; a null or unrecognised report leaves them as they are.
  bool HandleReport(const char* report) override;
  CEvtMsg* Duplicate() override;

  /// Reads an MML progress report: the columns "DONE_NUM" and "TOTAL_NUM" of EVT_SFTM_CPYFILE_PROGRESS, or
  /// "status=completed" with "done=" and "total=".
  bool HandleMMLReport(const char* report);

  /// Reads a TL1 progress report: FILES_DONE and FILES_TOTAL, TRANSFEREDFILES and TOTALNUM, or SLOTSDONE and SLOTSTTL.
  ///
  /// @return true when the shape is recognised and the total is not 0. A value without a digit reads as 0, a missing
  ///         one leaves its number as it was.
  bool HandleTL1LReport(const char* report);

  /// @return progress in percent, rounded down, not limited to 100; 0 when the total is 0. Computed modulo 2^32: wrong
  ///         above 42949672 items done.
  unsigned int GetGuage() const;

  unsigned int m_dwDoneNum;   ///< files or slots done
  unsigned int m_dwTotalNum;  ///< files or slots in all
};

/// Progress of running a script file. TL1 elements do not report it.
class VARNEL_API CVNScriptFileGuageEvt : public CEvtMsg {
 public:
  CVNScriptFileGuageEvt();
  ~CVNScriptFileGuageEvt() override;

  /// @return HandleMMLReport(); false for a null report and for a TL1 element.
  bool HandleReport(const char* report) override;
  CEvtMsg* Duplicate() override;

  /// Reads an MML script progress report: two numbers behind "TOTAL" and its separator, total and done.
  ///
  /// @return true when the report is recognised, both numbers are there and something follows them. After false the
  ///         numbers may have been set in part.
  bool HandleMMLReport(const char* report);

  /// @return progress in percent as CVNPackGuageEvt::GetGuage(), but 100 for a script of fewer than ten commands.
  unsigned int GetGuage() const;

  unsigned int m_dwDoneNum;   ///< commands done
  unsigned int m_dwTotalNum;  ///< commands in all
};

/// End of a script file run. TL1 elements do not report it.
class VARNEL_API CVNScriptFileEndEvt : public CEvtMsg {
 public:
  CVNScriptFileEndEvt();
  ~CVNScriptFileEndEvt() override;

  /// @return HandleMMLReport(); false for a null report and for a TL1 element.
  bool HandleReport(const char* report) override;
  CEvtMsg* Duplicate() override;

  /// Reads an MML end report: what stands behind its first "RSP".
  ///
  /// A text that holds "SUCCESS" gives result and code. One that holds "FAIL" gives result, code, item and text; it
  /// must have four words. The text is appended to what an earlier report left and ends with a blank.
  ///
  /// @return true when the report is recognised; the members are unchanged otherwise.
  bool HandleMMLReport(const char* report);

  std::string m_strResult;      ///< first word behind "RSP"
  std::string m_strResultItem;  ///< third word of a failure
  std::string m_strResultText;  ///< further words of failures, each with a blank behind it
  unsigned int m_dwResultCode;  ///< the number behind the result
  unsigned int m_dwExtra;       ///< 0; free for the owner, only copied here
};

}  // namespace VARNEL_COMMON

#endif
