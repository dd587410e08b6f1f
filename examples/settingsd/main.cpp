// A small settings daemon: it watches a directory of documents, reports what is wrong with them in
// the user's language and goes on with the rest, and keeps what it read as its state.
//
//   settingsd SETTINGS_DIR STATE_DIR [LANGUAGE [SECONDS]]
//
// It runs until SIGTERM or SIGINT, or for that many seconds. One copy runs at a time.

#include <unistd.h>

#include <csignal>
#include <utility>

#include "charproc.h"
#include "loc_loader.h"
#include "rundetector.h"
#include "settings.h"
#include "settingsd_loc.h"
#include "utf8io.h"

namespace {

using namespace settingsd;

volatile std::sig_atomic_t stopping = 0;

void stop(int) { stopping = 1; }

IDLocLoader dictionary;

bool loadTexts(const char* language) {
  static Loc::Loader loader;
  Loc::Module* own = new Loc::IdModule(&settingsd_info, &dictionary);
  own->name = "settingsd";
  own->mandatory = true;
  loader.append(new Loc::CommonCoreModule);
  loader.append(own);
  TTT::dictionaries[LocDictionary0] = &dictionary;
  std::string error;
  if (loader.load(language, &error)) return true;
  utf8printf(stderr, "%s\n", error.c_str());
  return false;
}

std::string folder(const char* path) {
  std::string folder = path;
  if (folder.empty() || folder.back() != '/') folder += '/';
  return folder;
}

void report(FILE* stream, const TTT& message) { utf8printf_s(stream, lineOf(message).c_str()); }

void reportChanges(const Settings& before, const Settings& now) {
  for (const auto& [name, setting] : now) {
    const auto old = before.find(name);
    if (old == before.end() || !(old->second == setting))
      report(stdout, TTT(LocDictionary0, MessageChanged) << name.c_str() << setting.value.c_str());
  }
}

void reportProblems(const std::vector<std::string>& before, const std::vector<std::string>& now) {
  if (before != now)
    for (const std::string& problem : now) utf8printf_s(stderr, problem.c_str());
}

void run(const std::string& source, const std::string& target, unsigned int seconds) {
  Reading known;
  loadState(target + "settings.state", known.settings);
  for (unsigned int pass = 0; !stopping; ++pass) {
    Reading now = readDirectory(source);
    if (pass == 0)
      report(stdout, TTT(LocDictionary0, MessageStarted)
                         << static_cast<int>(now.settings.size()) << now.documents);
    reportProblems(known.problems, now.problems);
    reportChanges(known.settings, now.settings);
    if (known.settings != now.settings) {
      saveState(target + "settings.state", now.settings);
      saveDocument(target + "settings.xml", now.settings);
    }
    known = std::move(now);
    std::fflush(stdout);
    if (seconds && pass + 1 >= seconds) break;
    sleep(1);
  }
}

}  // namespace

int main(int argc, char** argv) {
  StringVector<char> args;
  utf8args(argc, argv, args);
  unsigned int seconds = 0;
  if (args.getCount() < 3 || (args.getCount() > 4 && !strtouint(args[4], &seconds))) {
    utf8printf(stderr, "usage: %s SETTINGS_DIR STATE_DIR [LANGUAGE [SECONDS]]\n", args[0]);
    return 3;
  }
  if (!loadTexts(args.getCount() > 3 ? args[3] : nullptr)) return 2;
  RunDetector detector("settingsd", nullptr);
  if (!detector.lock()) {
    report(stderr, TTT(LocDictionary0, MessageAlreadyRunning));
    return 1;
  }
  std::signal(SIGTERM, stop);
  std::signal(SIGINT, stop);
  int result = 0;
  try {
    run(folder(args[1]), folder(args[2]), seconds);
    report(stdout, TTT(LocDictionary0, MessageStopped));
  } catch (const TTT& failure) {
    report(stderr, failure);
    result = 2;
  }
  detector.unlock();
  return result;
}
