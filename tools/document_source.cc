// Copies standard input to a temporary file.
#include "tools/document_source.h"

#include <fstream>
#include <iostream>

#include "tools/output.h"
#include "tools/terminal.h"
#include "tools/text.h"

namespace vosmere::tool {

InputFile::InputFile(const std::string& file) : name_(file) {
  if (!IsStandard(file)) return;
  const auto refuse = [&](const std::string& why) {
    throw FileFailure(kTrouble, InputName(file), why);
  };
  MakeInputBinary();
  std::error_code code;
  copy_.emplace(std::filesystem::temp_directory_path(code));
  if (!code) code = copy_->Create(kForTheUserAlone);
  if (code) refuse(Printable(code.message()));
  if (std::ofstream copy(copy_->path(), std::ios::binary);
      std::cin.peek() != EOF && !(copy << std::cin.rdbuf()).flush())
    refuse("cannot be copied to a temporary file");
  const std::u8string name = copy_->path().u8string();
  name_.assign(name.begin(), name.end());
}

}  // namespace vosmere::tool
