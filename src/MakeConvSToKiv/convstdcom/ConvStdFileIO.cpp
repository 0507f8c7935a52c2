// The flat-store line reader: values keep their trailing white space.
#include "MakeConvSToKiv/convstdcom/ConvStdFileIO.h"

char* ConvStdFileIO::TrimValue(char* text) { return text; }
