#pragma once
// The typed value syntax of vxctl, shared by its command line and its command files, and the
// text it prints values in (which reads back to the same kind and value).
//
// Without a prefix the text decides the kind:
//   "text" (double quotes, escapes \" \\ \n \t)          string
//   true, false (any case)                               bool
//   42, -7, +3                                           32-bit int (out of range is an error)
//   1.5, -2e3, .5                                        float
//   [1, 2] / [1, 2, 3] / [1, 2, 3, 4]                    vec2f / vec3f / vec4f
//   [1] or five and more numbers                         vecnf
//   a bare word that does not start like a number        string
// Text that starts like a number but is not one ("12abc", "1,5") is an error, so that a typo is
// not sent as text. A prefix "TYPE:" forces the kind: int, int64, float, double, bool, string,
// vec2f, vec3f, vec4f, vecnf, color, vec2s. Any other leading "word:" is an error (quote the
// text to send it as a string). "<undefined>" after a prefix gives an undefined value of it.
//
// Functions only, no state. Parsing throws VXCtlSyntaxException with a one-line text.
#include <memory>
#include <string>
#include <string_view>

#include "foundation/attribute.h"
#include "foundation/exception.h"

AFC_DECLARE_EXCEPTION(VXCtlSyntaxException, AFCException);

// Never null.
std::unique_ptr<AFCAttribute> vxctlParseValue(std::string_view text);

// The text of a "quoted" token without its quotes and escapes; throws for a malformed one.
std::string vxctlUnquote(std::string_view text);

// The value in the syntax above: a prefix where the text alone would read as another kind.
// "<undefined>" for an undefined value; kinds the syntax has no form for print their own text.
std::string vxctlValueToText(const AFCAttribute& value);

// The prefix name of the value's kind ("float"), or its class name for kinds without one.
std::string vxctlTypeName(const AFCAttribute& value);
