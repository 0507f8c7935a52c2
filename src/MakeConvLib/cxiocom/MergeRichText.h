// Rich text of agenda topics: a memo of plain lines merged into an HTML frame
// whose "$text$" markers take one line each.
#pragma once

// Merges memo into format and gives the HTML text in *out, a heap block the
// caller frees with free (null when both are empty). A null out prints the
// text instead. byLines takes the memo line by line into the markers, with
// HTML escapes; otherwise the whole memo goes into the first one. Without a
// format the memo becomes one "<div>" with "<br />" for its line feeds. 0,
// -10 when memory runs out, -99 from a null argument of the line reader.
int MergeRichText(const char* memo, const char* format, bool byLines, char** out);

// Takes one line of text (up to an LF, which isn't consumed) into *out, a heap
// block: a VT stands for the byte behind it, so VT LF is a line feed inside
// the line. escape runs the line through the HTML escape with line breaks.
// The bytes consumed, -99 for a null argument, -10 when memory runs out.
int TakeTextLine(const char* text, char** out, bool escape);

// The white space of rich text: TAB, LF, CR and blank.
bool RichTextIsSpace(char c);
