// Stands in where gettext's library for PO files was not found when the tool was built.
#include "commands.h"
#include "diagnostics.h"

namespace cclng {

namespace {

int refuse() {
  tools::print_problem("cclng", "This cclng was built without gettext's library for PO files.");
  return tools::ExitUsage;
}

}  // namespace

int po_export(const std::string&, const std::string&, const std::string&) { return refuse(); }

int po_import(const std::string&, const std::string&, const std::string&) { return refuse(); }

}  // namespace cclng
