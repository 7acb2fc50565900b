#pragma once
// Text helpers of the host's log and messages: a log line stays one line of
// text, and a message of any length stays readable.

#include <string>

namespace vlthost {

// Bytes that would break a line of text are written as escapes: a line feed,
// carriage return and tab as \n, \r and \t, other control bytes and bytes that
// are not part of a well-formed UTF-8 sequence as \xHH. Everything else,
// backslashes included, stands as it is.
std::string escapeControlBytes(const std::string& text);

// A text longer than `limit` bytes keeps its head and its tail, and says in
// the middle how many bytes were left out. The cut never splits a UTF-8
// sequence.
constexpr size_t kMessageLimit = 480;
std::string shortenMiddle(const std::string& text, size_t limit = kMessageLimit);

}  // namespace vlthost
