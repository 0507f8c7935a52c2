// HTML escapes of plain text (entities, line breaks, links), their reverse,
// and percent-encoding of URL parts.
#pragma once

#include <string>
#include <string_view>

// Escapes text into a new heap block (the caller frees it with free): links
// made clickable with withLinks, LF as "<br>\n" and blanks as "&nbsp;" with
// lineBreaks, named instead of numeric entities with namedEntities. printOnly
// writes to standard output instead and gives null. Null for a null text or
// when memory runs out.
char* comHtmlEscape(const char* text, bool withLinks, bool lineBreaks, bool printOnly, bool namedEntities,
                    bool keepBreaks);
// The same as a string: numeric entities, no links.
std::string comHtmlEscapeString(std::string_view text, bool lineBreaks);

// The plain escape, appended to out; a null out prints, where a blank becomes
// "&nbsp;" only at the start of a line or before another blank.
void comHtmlEscapeText(std::string* out, std::string_view text, bool lineBreaks, bool namedEntities);
// The escape with "http://", "https://", "ftp://" and "mailto:" addresses
// turned into links; keepBreaks lets an address run on over a line break.
void comHtmlEscapeLink(std::string* out, std::string_view text, bool lineBreaks, bool keepBreaks);

// Decodes the entities the escapes write ("&nbsp;" to a blank); everything
// else is copied. The result is never longer than text, so out may have the
// size of text; gives the length written, -99 for a null argument.
int comHtmlUnescape(char* out, const char* text);
std::string comHtmlUnescape(std::string_view text);

// Percent-encoding: letters, digits and "-_.~" stay; mode 2 also keeps "/".
std::string comUrlEncode(std::string_view text, int mode);
