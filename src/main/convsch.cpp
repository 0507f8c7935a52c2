// convsch: migrates the schedule module's data into the target database, or undoes it.
#include "MakeConvSToKiv/mainconvsch/ConvMainSchStd.h"

int main(int argc, char** argv) {
    ConvMainSchStd program;
    return program.Run(argc, argv);
}
