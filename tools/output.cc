#include "tools/output.h"

#include <fstream>
#include <iostream>

#include "tools/failure.h"
#include "tools/replace_file.h"
#include "tools/scratch_file.h"
#include "tools/terminal.h"
#include "tools/text.h"

namespace vosmere::tool {
namespace {

void WriteStandardOutput(const FileWriter& write) try {
  const ScratchFile scratch;
  scratch.Create(kForTheUserAlone);
  write(scratch.path());
  MakeOutputBinary();
  std::ifstream file(scratch.path(), std::ios::binary);
  char piece[64 * 1024];
  while (file.read(piece, sizeof piece), file.gcount() > 0) std::cout.write(piece, file.gcount());
} catch (const std::filesystem::filesystem_error& error) {
  throw FileFailure(kTrouble, OutputName("-"),
                    "cannot be written: " + Printable(error.code().message()));
}

}  // namespace

void WriteOutput(const std::string& file, const FileWriter& write) {
  if (IsStandard(file))
    WriteStandardOutput(write);
  else
    ReplaceFile(file, write);
}

}  // namespace vosmere::tool
