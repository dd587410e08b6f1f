// Everything beside files that makes calls of the system: console, dictionaries, documents, the
// running copy, dates and locales.

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <clocale>
#include <cstring>

#include "cc_loc_loader.h"
#include "charproc.h"
#include "id_loc_loader.h"
#include "loc_module.h"
#include "mlproc.h"
#include "rundetector.h"
#include "tests/faults/fault_sweep.h"
#include "tests/loc/loc_support.h"
#include "tests/process/pid_folder.h"
#include "utf8io.h"

namespace {

using namespace cc::test;  // NOLINT(google-build-using-namespace)
using loc_test::LngFile;
using loc_test::MemoryFile;

TEST(Faults, Console) {
  const TempFolder folder;
  const std::string path = folder / "a";
  const char slice[] = "slice ";
  utf8printf(stderr, "%s", "");  // makes the shared buffer
  sweepFaults([&](FaultSweep& sweep) {
    FILE* stream = std::fopen(path.c_str(), "w");
    sweep.during([&] {
      utf8printf_s(stream, "plain ");
      utf8printf_s(stream, slice, slice + 6);
      utf8printf(stream, "formatted %d", 7);
    });
    std::fclose(stream);
    EXPECT_EQ(sweep.failures().empty(), fileBytes(path) == "plain slice formatted 7");
  });
}

TEST(Faults, Module) {
  const loc_test::EtcDir etc;
  etc.put("m.eng.lng", LngFile({"new"}, 7).bytes());
  const std::string file = "\n(file: " + etc.path + "m.eng.lng)";
  for (const bool mandatory : {true, false}) {
    sweepFaults([&](FaultSweep& sweep) {
      loc_test::TestModule module("m", mandatory, "old");
      std::string error;
      const bool result = sweep.during([&] { return module.load("eng", &error); });
      const bool opened = !sweep.failed("openStream") && !sweep.failed("fileStatus");
      const bool read = opened && !sweep.failed("readStream");
      EXPECT_STREQ(read ? "new" : "old", module.dictionary.getString(0));
      EXPECT_EQ(read || (!opened && !mandatory), result);
      const char* const reason =
          opened ? "Error during file reading" : "Could not find or access localization";
      EXPECT_EQ(result ? "" : "Localization loading failed: " + std::string(reason) + file, error);
    });
  }
}

TEST(Faults, LoaderOfVariables) {
  MemoryFile file(LngFile({"ab", "cd"}).bytes());
  sweepFaults([&](FaultSweep& sweep) {
    CCLocLoader loader;
    const char* variables[] = {"old", "old"};
    const char** targets[] = {&variables[0], &variables[1]};
    CCLocLoader::Localization info = {2, 8, 77, targets};
    const int code = sweep.during([&] { return loader.load(file.get(), info); });
    EXPECT_EQ(sweep.failures().empty() ? 0 : 6, code);
    EXPECT_STREQ(code == 0 ? "ab" : "old", variables[0]);
    EXPECT_STREQ(code == 0 ? "cd" : "old", variables[1]);
  });
}

TEST(Faults, RenderingThatLoadsItsDictionary) {
  const loc_test::EtcDir etc;
  const loc_test::KeepSlots keep;
  etc.put("common_core.eng.lng", LngFile(std::vector<std::string>(39, "text"), 0xF196B6AA).bytes());
  const TTT message(LocDictionaryCommonCore, 3);
  std::string first;
  message.makeMulti(first);  // what the library keeps is there
  sweepFaults([&](FaultSweep& sweep) {
    TTT::dictionaries[LocDictionaryCommonCore] = nullptr;
    std::string text;
    sweep.during([&] { message.makeMulti(text); });
    const bool failed =
        sweep.failed("openStream") || sweep.failed("fileStatus") || sweep.failed("readStream");
    EXPECT_EQ(failed ? "Localization loading failed: " : "text", text.substr(0, failed ? 29 : 9));
    message.makeMulti(text);
    EXPECT_EQ("text", text) << "the texts of an earlier load stay";
  });
}

struct OpenDocument : MLDoc {
  std::string content() const { return text ? std::string(text, textSize) : "(no text)"; }
  const char* title() const { return name.get(); }
};

TEST(Faults, LoadDocument) {
  const TempFolder folder;
  const std::string path = putFile(folder / "a", "<new/>");
  const Rules rules = {{"openFile", 4},         {"fileStatus", 4}, {"readFile", GoesOn, Short},
                       {"readFile", 32, Ended}, {"readFile", 26},  {"closeFile", 3}};
  sweepFaults([&](FaultSweep& sweep) {
    OpenDocument doc;
    doc.MLDoc::load("old", "<old/>", 6);
    const std::string thrown = sweep.thrownBy([&] { doc.MLDoc::load(path.c_str()); });
    EXPECT_EQ(sweep.expected(rules, path), thrown);
    EXPECT_EQ(thrown == "(nothing)" ? "<new/>" : "(no text)", doc.content());
    MLDoc::Token token;
    EXPECT_EQ(thrown == "(nothing)", doc.step(token));
    EXPECT_EQ(path, doc.title());
  });
}

TEST(Faults, WriteDocument) {
  const TempFolder folder;
  const std::string path = folder / "a";
  const Rules rules = {{"openStream", 4},   {"fileStatus", 4},  {"writeStream", 12, Ended},
                       {"writeStream", 35}, {"closeStream", 3}, {"requireNumericC", GoesOn}};
  sweepFaults([&](FaultSweep& sweep) {
    MLDocOut out;
    out.multiLine = false;
    const std::string thrown = sweep.thrownBy([&] {
      out.begin(path.c_str());
      out.beginItem("a");
      out.writeDoubleAttr("x", 1.5, false);
      out.beginChildren();
      out.beginItem("b");
      out.endItem(nullptr);
      out.endItem("a");
      out.end();
    });
    EXPECT_EQ(sweep.expected(rules, path), thrown);
    if (thrown == "(nothing)") {
      EXPECT_EQ("<a x=\"1.500000\">\n\t<b/>\n</a>\n", fileBytes(path));
    }
    EXPECT_EQ("(nothing)", thrownBy([&] {
                out.begin(path.c_str());
                out.write("again");
                out.end();
              }))
        << "usable as before";
    EXPECT_EQ("again", fileBytes(path));
  });
}

TEST(Faults, StateOfTheRunningCopy) {
  const PidFolder folder;
  // Plain, and so that each part of the number begins a read.
  const std::string own = std::to_string(::getpid());
  for (const std::string& content :
       {own, std::string(64, ' ') + own, std::string(63, ' ') + '+' + own}) {
    putFile(folder / "a.pid", content);
    const int lastByte = static_cast<int>(content.size() / 64);  // the read that brings it
    sweepFaults([&](FaultSweep& sweep) {
      const int state = sweep.during([] { return RunDetector("a", nullptr).getState(); });
      const bool opened = !sweep.failed("openFile") && !sweep.failed("fileStatus");
      // Neither short reads nor a name that cannot be read are in the way.
      bool known = !sweep.failed("signalProcess", ESRCH);
      for (const Failure& failure : sweep.failures()) {
        if (failure.function != "readFile" || failure.error == Short) continue;
        known &= failure.error == Ended && failure.turn > lastByte;
      }
      EXPECT_EQ(!opened ? RunDetector::NoPidFile
                : known ? RunDetector::Running
                        : RunDetector::StalePidFile,
                state);
      EXPECT_EQ(content, fileBytes(folder / "a.pid"));
    });
  }
}

TEST(Faults, LockAndUnlock) {
  const PidFolder folder;
  const std::string path = folder / "a.pid";
  const std::string own = std::to_string(::getpid());
  for (const std::string before : {"(no file)", "2147483646"}) {
    SCOPED_TRACE(before);
    sweepFaults([&](FaultSweep& sweep) {
      ::unlink(path.c_str());
      if (before != "(no file)") putFile(path, before);
      RunDetector detector("a", nullptr);
      const bool locked = sweep.during([&] { return detector.lock(); });
      if (locked) {
        EXPECT_EQ(own, fileBytes(path));
        sweep.during([&] { detector.unlock(); });
        EXPECT_TRUE(fileBytes(path) == own || fileBytes(path) == "(no file)");
      } else {
        EXPECT_FALSE(sweep.failures().empty());
        const bool cut = sweep.failed("writeFile", Short) && sweep.failed("truncateFile");
        const std::string left = fileBytes(path);
        EXPECT_TRUE(left.empty() || left == "(no file)" || left == before || left == own || cut)
            << left;
        detector.unlock();
        EXPECT_NE(own, fileBytes(path)) << "a copy that gave up counts as running";
      }
      ::unlink(path.c_str());
      EXPECT_TRUE(RunDetector("a", nullptr).lock()) << "locked for ever";
    });
  }
}

TEST(Faults, TheFileOfALiveCopyIsNeverTakenOver) {
  const PidFolder folder;
  const pid_t copy = startChild([] {
    ::pause();
    return 0;
  });
  const std::string path = putFile(folder / "a.pid", std::to_string(copy));
  sweepFaults([&](FaultSweep& sweep) {
    RunDetector detector("a", "");  // any live process counts
    const bool locked = sweep.during([&] { return detector.lock(); });
    // Unless the system says twice that the process is gone or the file is empty.
    const bool denied = sweep.failed("signalProcess", ESRCH) || sweep.failed("readFile", Ended);
    EXPECT_TRUE(!locked || denied);
    EXPECT_TRUE(denied || fileBytes(path) == std::to_string(copy));
    putFile(path, std::to_string(copy));
  });
  ::kill(copy, SIGKILL);
  exitCode(copy);
}

TEST(Faults, Dates) {
  sweepFaults([&](FaultSweep& sweep) {
    char date[100] = "old";
    char both[100] = "old";
    const bool dated = sweep.during([&] { return sprintf_date(0, date, sizeof date); });
    const bool timed = sweep.during([&] { return sprintf_date_time(0, both, sizeof both); });
    EXPECT_EQ(dated, *date != 0);
    EXPECT_EQ(timed, *both != 0);
    EXPECT_EQ(sweep.failures().empty(), dated && timed);
  });
}

TEST(Faults, CharacterTables) {
  const std::string numeric = std::setlocale(LC_NUMERIC, nullptr);
  sweepFaults([&](FaultSweep& sweep) {
    std::setlocale(LC_CTYPE, "C");
    std::memset(const_cast<unsigned char*>(chr_upper_table_ascii), 0, 256);
    sweep.during([] { chr_tables_prepare(); });
    for (int c = 0; c < 128; ++c) {
      ASSERT_EQ(c >= 'a' && c <= 'z' ? c - 32 : c, chr_upper_table_ascii[c]);
    }
    EXPECT_EQ(numeric, std::setlocale(LC_NUMERIC, nullptr));
  });
  chr_tables_prepare();
}

}  // namespace
