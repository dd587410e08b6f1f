// The commands. Each prints its findings itself and returns an exit code of the tools.
#pragma once

#include <string>
#include <vector>

#include "lng_file.h"
#include "report.h"

namespace cclng {

// Compiles the document into the dictionary file `output`; writes nothing when it has findings.
int compile(const std::string& document, const std::string& output, tools::ByteOrder order);
// Turns a dictionary file back into a document; an empty `output` means the standard output.
int decompile(const std::string& file, const std::string& output);
// Checks documents, against the reference unless `reference` is empty.
int check(const std::vector<std::string>& documents, const std::string& reference,
          tools::Format format);
// Writes the C++ record that a program compiles in; an empty `output` means the standard output.
int header(const std::string& document, const std::string& output);

// Prints how much of the reference each document translates. Where `reference` is empty, it is the
// first of the documents.
int stats(std::vector<std::string> documents, std::string reference, bool json);
// Prints which messages differ between two documents; ExitFindings when any does.
int diff(const std::string& older, const std::string& newer);
// Writes a PO file for translators: the texts of the reference with those of the translation, or a
// template where `translation` is empty. An empty `output` means the standard output.
int po_export(const std::string& reference, const std::string& translation,
              const std::string& output);
// Writes the document of a translation from a PO file that translates all of the reference; writes
// nothing when there are findings. An empty `output` means the standard output.
int po_import(const std::string& reference, const std::string& file, const std::string& output);

// What the commands share.

struct Catalogue;
class Findings;
// Reads a document and checks it by itself. Findings are printed; `code` is the exit code.
Catalogue load_checked(const std::string& document, int& code);
// Reads a translation that may lack messages, or be older than the reference.
Catalogue load_partial(const std::string& document, const Catalogue& reference, int& code);
// Reads a document of any messages.
Catalogue load_any(const std::string& document, int& code);
// Prints the findings. The exit code for them.
int verdict(Findings& findings);
// Prints why a file could not be read or written. The exit code for that.
int unreadable(const std::string& problem);
// Prints or saves what a command made, and returns its exit code.
int deliver(const std::string& output, const std::string& bytes);

}  // namespace cclng
