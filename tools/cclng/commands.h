// The four commands. Each prints its findings itself and returns an exit code of the tools.
#pragma once

#include <string>
#include <vector>

#include "lng_file.h"

namespace cclng {

// Compiles the document into the dictionary file `output`; writes nothing when it has findings.
int compile(const std::string& document, const std::string& output, tools::ByteOrder order);
// Turns a dictionary file back into a document; an empty `output` means the standard output.
int decompile(const std::string& file, const std::string& output);
// Checks documents, against the reference unless `reference` is empty.
int check(const std::vector<std::string>& documents, const std::string& reference);
// Writes the C++ record that a program compiles in; an empty `output` means the standard output.
int header(const std::string& document, const std::string& output);

// Reads a document and checks it by itself. Findings are printed; `code` is the exit code.
struct Catalogue;
Catalogue load_checked(const std::string& document, int& code);
// Prints or saves what a command made, and returns its exit code.
int deliver(const std::string& output, const std::string& bytes);

}  // namespace cclng
