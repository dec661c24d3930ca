// `tv.scan`: recordings of broadcasts over the wire.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "net/FilesBeneath.h"
#include "text/Base64.h"
#include "virtualtv/broadcast/Broadcast.h"
#include "virtualtv/rpc/RpcTest.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::rpc {
namespace {

const std::string news = [] {
  const broadcast_tests::Blob bytes = broadcast_tests::oneService().bytes;
  return std::string(bytes.begin(), bytes.end());
}();

class ScanMethod : public RpcTest {
 protected:
  explicit ScanMethod(Options options = {}) : RpcTest(std::move(options)) {}

  Json::Value scan(const std::string& name, const std::string& value, bool imports = false, bool adds = false) {
    Json::Value params;
    params[name] = value;
    params["import"] = imports;
    params["add"] = adds;
    return client.call("tv.scan", params);
  }
  const Json::Value found = json(broadcast_tests::document(broadcast_tests::scan(broadcast_tests::oneService().bytes)));
  Connected client{server};
};

TEST_F(ScanMethod, TellsAndImportsWhatIsInARecording) {
  const std::string content = text::toBase64(news);
  EXPECT_EQ(scan("content", content)["result"], found);
  EXPECT_EQ(client.result("tv.services")["total"], 81);
  EXPECT_EQ(scan("content", content, true, true)["result"], found);
  EXPECT_EQ(client.result("tv.services")["total"], 82);
  EXPECT_EQ(scan("content", content, true)["result"], found);
  EXPECT_EQ(client.result("tv.services")["total"], 1);
  EXPECT_EQ(scan("content", "", true)["result"]["services"], Json::Value(Json::arrayValue));
  EXPECT_EQ(client.result("tv.services")["total"], 1);
}

TEST_F(ScanMethod, RefusesWhatItCannotRead) {
  for (const char* const none : {"RwAA=", "R", "Rw", "RwA$", "Rx==", "R===", "===="}) {
    EXPECT_EQ(reasonOf(scan("content", none)), "content: base64 is wanted") << none;
  }
  EXPECT_EQ(reasonOf(client.call("tv.scan")), "one of path and content is wanted");
  const Json::Value noFiles = scan("path", "a.ts");
  EXPECT_EQ(codeOf(noFiles), 1002);
  EXPECT_NE(reasonOf(noFiles).find("clients reach no files"), std::string::npos);
}

class ScanMethodWithFiles : public ScanMethod {
 protected:
  ScanMethodWithFiles() : ScanMethod({.files = std::make_shared<net::FilesBeneath>(folder().path())}) {}
  static test::TemporaryDirectory& folder() {
    static test::TemporaryDirectory made;
    return made;
  }
};

TEST_F(ScanMethodWithFiles, ReadsThoseBeneathTheDirectory) {
  test::write(folder() / "news.ts", news);
  EXPECT_EQ(scan("path", "news.ts")["result"], found);
  EXPECT_EQ(reasonOf(scan("path", "../x")), "cannot read ../x: it leads out of the directory, or over a link");
}

}  // namespace
}  // namespace virtualtv::rpc
