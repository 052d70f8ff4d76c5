#include "foundation/errlog_backend_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <sstream>

namespace {
namespace fs = std::filesystem;

// A fresh directory under the system's temporary directory, removed with everything in it.
class ErrLogFileBackend : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
    directory_ = fs::temp_directory_path() /
                 ("vx_errlog_" + std::to_string(AFCErrLogBackendFile::processId())) / test->name();
    fs::remove_all(directory_);
  }
  void TearDown() override { fs::remove_all(directory_.parent_path()); }

  static std::string contentsOf(const fs::path& file) {
    std::ifstream in(file);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
  }

  fs::path directory_;
};

AFCErrLogEvent eventNow(std::string message) {
  return AFCErrLogEvent(AFC_ERRLOG_ERROR, "libAFC", AFCTimestamp::now(), "file.cpp", 5,
                        std::move(message));
}
}  // namespace

TEST_F(ErrLogFileBackend, CreatesTheDirectoryAndBeginsWithTheStartHeader) {
  AFCErrLogBackendFile backend(directory_ / "nested", "vxsim");
  ASSERT_TRUE(backend.isActive());
  EXPECT_EQ(backend.getPath(), directory_ / "nested" / "vxsim.txt");

  const std::string text = contentsOf(backend.getPath());
  const std::string pid = "(pid " + std::to_string(AFCErrLogBackendFile::processId()) + ")";
  EXPECT_EQ(text.rfind("---------- START ", 0), 0u) << text;
  EXPECT_NE(text.find(" " + pid + " (vxsim)  ---------\n"), std::string::npos) << text;
}

TEST_F(ErrLogFileBackend, EveryEventIsInTheFileAtOnce) {
  AFCErrLogBackendFile backend(directory_, "vxsim");
  const AFCErrLogEvent event = eventNow("disk full");
  backend.write(event);
  const std::string expected = "ERROR: libAFC " + event.getTime().format("(%H:%M:%S)") +
                               " \"file.cpp\", line 5\n disk full\n";
  const std::string text = contentsOf(backend.getPath());
  ASSERT_GE(text.size(), expected.size());
  EXPECT_EQ(text.substr(text.size() - expected.size()), expected);
}

TEST_F(ErrLogFileBackend, MovesTheFileOfAnEarlierRunAside) {
  {
    AFCErrLogBackendFile earlier(directory_, "vxsim");
    earlier.write(eventNow("from the earlier run"));
  }
  AFCErrLogBackendFile current(directory_, "vxsim");
  EXPECT_EQ(contentsOf(current.getPath()).find("earlier run"), std::string::npos);
  EXPECT_NE(contentsOf(directory_ / "vxsim.old.txt").find("from the earlier run"),
            std::string::npos);
}

TEST_F(ErrLogFileBackend, StaysInactiveAndSaysWhyWhenTheFileCannotBeOpened) {
  // Directories where the file and its old name should be; the old one is not empty.
  fs::create_directories(directory_ / "vxsim.txt");
  fs::create_directories(directory_ / "vxsim.old.txt" / "kept");
  std::ostringstream captured;
  std::streambuf* saved = std::cerr.rdbuf(captured.rdbuf());
  AFCErrLogBackendFile backend(directory_, "vxsim");
  backend.write(eventNow("lost"));
  std::cerr.rdbuf(saved);

  EXPECT_FALSE(backend.isActive());
  EXPECT_NE(captured.str().find("Can't rename old log file to"), std::string::npos)
      << captured.str();
  EXPECT_NE(captured.str().find("Can't open error log output, "), std::string::npos)
      << captured.str();
}
