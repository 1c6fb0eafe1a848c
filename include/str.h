#ifndef VARNEL_STR_H
#define VARNEL_STR_H

#include <string>
#include <vector>

#include "varnel_export.h"

/// @file
/// String, path and time services, and the slots in TL1 and MML parameters.
///
/// White space is what isspace() accepts in the "C" locale: blank, tab, line feed, vertical tab, form feed and
/// carriage return. Case folding concerns ASCII letters only. The host's locale changes none of the results, bytes
/// above 0x7F are ordinary characters, and every function takes time linear in the size of its arguments.
///
/// All functions are reentrant and keep no state. Memory exhaustion throws std::bad_alloc.

namespace VARNEL_COMMON {

/// Removes leading white space.
///
/// @param s  the text, changed in place.
VARNEL_API void StrTrimLeft(std::string& s);

/// Removes trailing white space.
///
/// @param s  the text, changed in place.
VARNEL_API void StrTrimRight(std::string& s);

/// Removes leading and trailing white space.
///
/// @param s  the text, changed in place.
VARNEL_API void StrTrim(std::string& s);

/// Case-sensitive wildcard match by the host's matcher (NS_UTIL::RepalaceSensInfo).
///
/// @param text     not null.
/// @param pattern  "*" matches any run of characters, also an empty one; every other character matches itself.
/// @return non-zero when the whole of `text` matches.
VARNEL_API int strmcmp(const char* text, const char* pattern);

/// Wildcard match that ignores case, with "*" (any run) and "?" (one character).
///
/// It is simpler than a shell's matcher, and callers rely on what it refuses:
/// - an empty text matches nothing, not even "*";
/// - a "?" next to a "*" consumes nothing: "*?" matches like "*", but at the end of the text nothing at all;
/// - only the first occurrence of the text after a "*" is tried: "abab" does not match "*ab";
/// - a mismatch after a "?" goes on from the last "*" (or from the start of the pattern) at the character that did
///   not match: "abaab" matches "a?b". Any other mismatch ends the search.
///
/// @param text     may be null.
/// @param pattern  may be null.
/// @return 1 on a match, else 0; 0 when either is null.
VARNEL_API int strmcmpnocase(const char* text, const char* pattern);

/// Frees a null-terminated array of heap blocks and the array itself.
///
/// @param array  the array and all its blocks must come from malloc(). May be null.
VARNEL_API void freeArray(void** array);

/// Replaces every occurrence of `from`, including those that a replacement creates: replacing "aa" by "a" in "aaaa"
/// results in "a".
///
/// An empty `from`, or a `to` that contains `from`, leaves the text unchanged: replace "\n" by "\r\n" in two steps,
/// using a character that the text does not contain. The caller must avoid other pairs that grow for ever ("ab" by
/// "bbaa"). Time is linear in the text plus all replacement texts.
///
/// @param s     the text, changed in place.
/// @param from  what is replaced; may be `s`.
/// @param to    the replacement; may be `s`.
VARNEL_API void ReplaceString(std::string& s, const std::string& from, const std::string& to);

/// Trims a text and reduces every run of white space inside it to one blank.
///
/// @param s  the text, changed in place.
VARNEL_API void StrCollapse(std::string& s);

/// Turns ASCII letters to upper case.
///
/// @param s  the text, changed in place.
VARNEL_API void toUpperCase(std::string& s);

/// Returns a copy without line feeds, with a blank for each carriage return, and with runs of blanks reduced to one,
/// also at both ends. Tabs stay. Lines are joined: "A\nB" becomes "AB".
///
/// @param text  may be null.
/// @return the copy; empty for null.
VARNEL_API std::string replaceEnterWithBlank(const char* text);

/// Extracts the value of a TL1 attribute: the text after the first occurrence of `name`, up to the first ",", else up
/// to the first double quote, else up to the end of the text. Quotes around a value are not interpreted.
///
/// @param text   the text to search.
/// @param name   the whole prefix, with its "=": "TOTAL=". Also found inside a word: in "SUBTOTAL=".
/// @param value  the value, not trimmed; empty when false is returned. Also empty, with true, when the end is at
///               the start of the value or inside `name`.
/// @return false when `text` is null, `text` or `name` is empty, `name` does not occur, or the text ends right after
///         it.
VARNEL_API bool GetTL1AttrbuteString(const char* text, const std::string& name, std::string& value);

/// Splits a text at every `sep` and appends the fields to `fields`, which is not cleared.
///
/// Fields lose leading white space and keep trailing white space; empty fields are kept, also the last one. If the
/// separator is white space itself, a run of it separates once: "a   b" at " " is "a" and "b".
///
/// @param text    may belong to an element of `fields`; null appends nothing.
/// @param sep     the separator.
/// @param fields  receives the fields; at least one if `text` is not null.
VARNEL_API void SplitStringByChar(const char* text, char sep, std::vector<std::string>& fields);

/// Reads one value from a text as a default std::istream would, leading white space skipped, numbers in decimal.
///
/// Exists for unsigned int, char (the first character that is not white space) and unsigned short. Text after the
/// number is ignored, and a missing number is not reported: check for digits first. A sign is accepted: "-1" is the
/// type's largest value.
///
/// @tparam T     one of these types.
/// @param text   may be null.
/// @param value  the number read; 0 when the text begins with something else; the type's largest value on overflow.
///               Unchanged when `text` is null, empty or all white space.
template <typename T>
void ConvertFromString(const char* text, T& value);

/// @cond
extern template VARNEL_API void ConvertFromString<unsigned int>(const char* text, unsigned int& value);
extern template VARNEL_API void ConvertFromString<char>(const char* text, char& value);
extern template VARNEL_API void ConvertFromString<unsigned short>(const char* text, unsigned short& value);
/// @endcond

/// Splits a path at its last "/" or "\"; the outputs carry "/" only.
///
/// @param fullPath  may be one of the outputs. An empty one yields two empty texts.
/// @param filePath  the folder with its closing "/"; "/" for a bare file name, which is then a path in the root folder.
/// @param fileName  the name after it, empty for a path that ends in a separator. If one variable is passed for both
///                  outputs, it receives the folder.
VARNEL_API void SplitFilePathAndFileName(const std::string& fullPath, std::string& filePath, std::string& fileName);

/// Splits a bare file name at its last ".".
///
/// @param fileName  without a folder: "dir.d/file" is split in its folder.
/// @param leftName  the name before the dot; the whole name if it has no dot.
/// @param exName    the extension with its dot (".bin"), or empty. If one variable is passed for both outputs, it
///                  receives the extension.
VARNEL_API void GetFileLeftNameAndExName(std::string fileName, std::string& leftName, std::string& exName);

/// Refuses paths that contain "..".
///
/// @param path  need not exist.
/// @return false when two consecutive dots occur anywhere in the path, also for "file..txt"; else true, also for an
///         empty or absolute path.
VARNEL_API bool VerifyFilePathAndName(const std::string& path);

/// Resolves a path to an absolute one without symbolic links, "." or "..".
///
/// @param path  of something that exists, up to its first NUL; may contain "..".
/// @return the resolved path; empty when `path` is longer than 4096 bytes, cannot be resolved (for example, because it
///         does not exist), or resolves to a path that VerifyFilePathAndName() refuses. Each refusal is logged.
VARNEL_API std::string ToAbsPath(const std::string& path);

/// Removes a file through the host (NS_UTIL::RemoveFile).
///
/// @param path  of the file; not checked by VerifyFilePathAndName().
/// @return the result of the host: 0, or an errno value.
VARNEL_API int VNRemoveFile(const std::string& path);

/// Removes a folder and its contents through the host (NS_UTIL::RemoveDir).
///
/// @param path  of the folder; not checked by VerifyFilePathAndName().
/// @return the result of the host: 0, or an errno value.
VARNEL_API int VNRemoveDir(const std::string& path);

/// Returns the current time in seconds, not milliseconds. Do not measure durations with it: it follows changes of the
/// system time.
///
/// Whole seconds and fraction come from two consecutive clock readings. If a second ends between them, the result is up
/// to one second too low.
///
/// @return seconds since the epoch, with a fraction in microseconds; a fraction of 0 if the clock cannot be read.
VARNEL_API double GetCurTimeMilSec();

/// For polling loops: returns whether two readings of a counter are in different periods.
///
/// It does not report that a whole period has passed: with a period of 10 it is true from 9 to 11, and false from 1 to
/// 9. For a counter that has wrapped (`now` below `last`, in different periods) it is true.
///
/// @param last    the earlier reading.
/// @param now     the later reading; for 0 the result is false.
/// @param period  in the unit of the other two; not 0, which would be a division by zero.
/// @return true when a multiple of `period` is above `last` and not above `now`, or the counter has wrapped.
VARNEL_API bool IsTimerReach(unsigned int last, unsigned int now, unsigned int period);

/// Returns the current date in local time.
///
/// @return "YYYYMMDD".
VARNEL_API std::string GetCurDateFormated();

/// Returns the local date and time of a moment.
///
/// @param seconds  since the epoch, negative before it. A year above 2147483647 ends the process.
/// @return "YYYY-MM-DD hh:mm:ss", 19 characters for the years 1000 to 9999; other years are filled with zeros to four
///         characters, or longer.
VARNEL_API std::string MakeTimeFormated(long seconds);

/// Returns the current date and time in local time.
///
/// @return as MakeTimeFormated().
VARNEL_API std::string GetCurTimeFormated();

/// Reads the slot of a TL1 access identifier, "SLOT-3-5" or "SLOT-7", from after the first "SLOT-" of a text.
///
/// If no further "-" follows, one number is read, the slot. Otherwise shelf, one character and slot are read: a "-"
/// anywhere after it makes the first number the shelf, so "SLOT-5:ABC-DEF" is shelf 5, slot 0.
///
/// Numbers are those that ConvertFromString() reads: 0 without a digit, 65535 on overflow.
///
/// @param text   may be null.
/// @param shelf  unchanged if no further "-" follows, and if the text ends after "SLOT-".
/// @param slot   unchanged if the text ends before it, and after a shelf that could not be read.
/// @return false, with both unchanged, when `text` is null or contains no "SLOT-"; else true, also without a number.
VARNEL_API bool ParseTL1SlotID(const char* text, unsigned short& shelf, unsigned short& slot);

/// Reads the slot of an MML parameter, "3-5" or "7", as ParseTL1SlotID() does after the "SLOT-".
///
/// @param text   may be null.
/// @param shelf  as there.
/// @param slot   as there.
/// @return false, with both unchanged, when `text` is null; else true.
VARNEL_API bool ParseMMLSlotID(const char* text, unsigned short& shelf, unsigned short& slot);

}  // namespace VARNEL_COMMON

#endif
