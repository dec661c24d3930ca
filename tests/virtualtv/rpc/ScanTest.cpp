// SPDX-License-Identifier: MIT
// `tv.scan`: recordings of broadcasts, sent by clients.
#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "net/FilesBeneath.h"
#include "rpc/Scans.h"
#include "services/ServiceStore.h"
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

/// A part of the recording. @param part  first, next or last
Json::Value partOf(const std::string& bytes, const std::string& part, bool imports = false) {
  Json::Value params;
  params["content"] = text::toBase64(bytes);
  params["part"] = part;
  params["import"] = imports;
  return params;
}

TEST_F(ScanMethod, ReadsARecordingThatComesInParts) {
  const std::size_t cut = 100;  // inside a packet
  Json::Value begun = client.result("tv.scan", partOf(news.substr(0, cut), "first"));
  EXPECT_EQ(begun["packets"], 0);
  EXPECT_EQ(begun["services"], Json::Value(Json::arrayValue));
  client.result("tv.scan", partOf(news.substr(cut, 300), "next"));
  EXPECT_EQ(client.call("tv.scan", partOf(news.substr(cut + 300), "last", true))["result"], found);
  EXPECT_EQ(client.result("tv.services")["total"], 1);
}

TEST_F(ScanMethod, RefusesAPartOfNoRecording) {
  const char* const none = "part: no recording is under way here; send its first part";
  EXPECT_EQ(reasonOf(client.call("tv.scan", partOf(news, "next"))), none);
  EXPECT_EQ(reasonOf(client.call("tv.scan", partOf(news, "last"))), none);
  EXPECT_EQ(reasonOf(client.call("tv.scan", partOf(news, "all"))),
            "part: one of first, next, last is wanted, not 'all'");
  client.result("tv.scan", partOf(news, "first"));
  Connected other(server);
  EXPECT_EQ(reasonOf(other.call("tv.scan", partOf(news, "last"))), none);
  client.result("tv.scan", partOf("", "last"));
  EXPECT_EQ(reasonOf(client.call("tv.scan", partOf("", "last"))), none);
}

TEST_F(ScanMethod, ImportsLaterWhatItsSessionHasFound) {
  const char* const none = "this session has scanned no recording of late; scan it again";
  EXPECT_EQ(reasonOf(client.call("tv.importScan")), none);
  scan("content", text::toBase64(news));
  Connected other(server);
  EXPECT_EQ(reasonOf(other.call("tv.importScan")), none);
  Json::Value adds;
  adds["add"] = true;
  EXPECT_EQ(client.result("tv.importScan", adds), json(R"({"imported": 1, "added": 1, "changed": 0, "gone": 0,
                                                           "problems": [], "total": 0})"));
  EXPECT_EQ(client.result("tv.services")["total"], 82);
  EXPECT_EQ(client.result("tv.importScan")["gone"], 81);
  EXPECT_EQ(client.result("tv.services")["total"], 1);
  client.result("tv.scan", partOf(news, "first"));
  EXPECT_EQ(reasonOf(client.call("tv.importScan")), none) << "another recording is under way";
}

TEST_F(ScanMethod, KeepsOnlyTheLastOfAllSessions) {
  scan("content", text::toBase64(news));
  std::vector<std::unique_ptr<Connected>> others;
  for (std::size_t at = 0; at < Scans::most; ++at) {
    EXPECT_EQ(codeOf(client.call("tv.importScan")), 0) << at;
    others.push_back(std::make_unique<Connected>(server));
    others.back()->result("tv.scan", partOf(news, "first"));
  }
  EXPECT_EQ(codeOf(client.call("tv.importScan")), 1002);
  others.pop_back();  // makes room
  scan("content", text::toBase64(news));
  EXPECT_EQ(codeOf(others.front()->call("tv.scan", partOf("", "last"))), 0);
}

TEST_F(ScanMethod, LeavesServicesThatWereSentWithoutARecording) {
  scan("content", text::toBase64(news), true);
  EXPECT_FALSE(tv().services().all().begin()->second.footage);
  EXPECT_FALSE(client.result("tv.state")["windows"]["main"]["service"].isMember("recording"));
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

TEST_F(ScanMethodWithFiles, HasServicesPlayFromThereWithoutTrustInThem) {
  test::write(folder() / "news.ts", news);
  scan("path", "news.ts", true);
  const Footage wanted{"news.ts", 101, streamOfH264, false};
  EXPECT_EQ(tv().services().all().begin()->second.footage, wanted);
  EXPECT_EQ(client.result("tv.state")["windows"]["main"]["service"]["recording"],
            json(R"({"path": "news.ts", "video": 101, "type": 27})"));
}

TEST_F(ScanMethodWithFiles, TrustsNoRecordingOfASnapshot) {
  Service service = tv().services().all().begin()->second;
  service.footage = Footage{"/news.ts", 101, streamOfH264, true};
  tv().import({service}, false);
  const Json::Value snapshot = client.result("tv.snapshot");
  client.call("tv.restore", snapshot);
  service.footage->isTrusted = false;
  EXPECT_EQ(tv().services().all().begin()->second.footage, service.footage);
}

}  // namespace
}  // namespace virtualtv::rpc
