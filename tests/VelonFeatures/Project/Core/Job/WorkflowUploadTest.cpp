// SPDX-License-Identifier: Apache-2.0
#include <map>

#include "VelonFeatures/Project/Core/Job/WorkflowLibrary.h"
#include "tests/VelonFeatures/Project/Core/Job/JobFixture.h"

namespace {

class WorkflowUploadTest : public JobFixture {
  protected:
    using Fields = std::map<std::string, std::string>;

    WorkflowUploadTest() {
        setenv("FAKE_WORKFLOW", mSession.Path("").c_str(), 1);
        UseLibrary("answers");
    }
    ~WorkflowUploadTest() override {
        gWorkflowLibraryPath = mFormerPath;
        unsetenv("FAKE_WORKFLOW");
    }

    void UseLibrary(std::string const& kind) {
        mPath = FAKE_WORKFLOW_PREFIX + kind + ".so";
        gWorkflowLibraryPath = mPath.c_str();
    }
    static Fields AllFields() {
        return {{"ZUUserName", "klaus"},
                {"ZUUserPassword", "secret"},
                {"ZUIP", "10.0.0.1"},
                {"ZUWorkflowName", "Proof and Print"},
                {"ZUWorkflowFolder", "/Jobs/Incoming"}};
    }
    // Two options take the identifier: one any number, the other only what it has.
    void OpenWith(Fields const& fields, bool hasServer = true, bool isTwoWay = true,
                  std::string const& lines = "") {
        std::string ppd = TestSession::Head() + lines + TestSession::Popup("Duplex") +
                          Range("ZUSarnokeJobId", "0;99999;1;5") +
                          TestSession::Popup("ZUSKNewJobID", "Dynamic", true);
        for (auto const& [keyword, value] : fields) {
            ppd += SpecialOption(keyword, value);
        }
        Open(hasServer ? ppd + SpecialOption("Brennal", "2.0") : ppd);
        SetTwoWay(isTwoWay);
        for (char const* identifier : {"4711", "4712"}) {
            Give("*ZUSKNewJobID", identifier);
        }
        ControlOf(*mPPD, "*ZUSKNewJobID")->SetCurrentControlWithCFString(CFSTR("A"));
    }
    void SetIdentifier(std::string const& bytes) {
        std::ofstream(mSession.Path("identifier"), std::ios::binary) << bytes;
    }
    void SetJobName(std::string const& name) {
        mSession.SetItem("com.apple.print.JobInfo.PMJobName", Str(name).Get());
    }
    // What the library was asked since the last call.
    std::string TakeLog() {
        std::string const log = ReadFile(mSession.Path("log"));
        unlink(mSession.Path("log").c_str());
        return log;
    }
    std::string Identifiers() {
        return ValueOf(*mPPD, "*ZUSarnokeJobId") + " " + ValueOf(*mPPD, "*ZUSKNewJobID");
    }
    static Texts FeatureCode(std::string const& identifier) {
        return {"%%BeginFeature: *ZUSarnokeJobId " + identifier + "\n" + identifier +
                    "\n%%EndFeature\n",
                "%%BeginFeature: *ZUSKNewJobID " + identifier + "\n\n%%EndFeature\n"};
    }

    static constexpr char kOpen[] = "open 10.0.0.1|klaus|secret|english|0\n";

  private:
    char const* const mFormerPath = gWorkflowLibraryPath;
    std::string mPath;
};

TEST_F(WorkflowUploadTest, EachCommitMakesAJobWhoseIdentifierIsInTheCode) {
    OpenWith(AllFields());
    SetJobName("Angebot f\u00FCr M\u00FCller");
    for (char const* identifier : {"4711", "4712"}) {
        SetIdentifier(identifier);
        EXPECT_EQ(FeatureCode(identifier), Features());
        EXPECT_EQ("loaded\n" + std::string(kOpen) +
                      "create session|/Jobs/Incoming|Angebot f\u00FCr M\u00FCller|"
                      "/tmp/Proof and Print.xml\nclose session\nunloaded\n",
                  TakeLog());
        EXPECT_EQ(std::string(identifier) + " " + identifier, Identifiers());
    }
}

TEST_F(WorkflowUploadTest, NothingIsLoadedWithoutAServerOrTheWayToIt) {
    SetIdentifier("4711");
    for (bool const hasServer : {false, true}) {
        OpenWith(AllFields(), hasServer, !hasServer);
        Job();
        EXPECT_EQ("", TakeLog()) << hasServer;
        EXPECT_EQ("5 A", Identifiers());
    }
    OpenWith(AllFields());
    UseLibrary("absent");
    EXPECT_FALSE(WorkflowLibrary().IsLoaded());
    Job();
    EXPECT_EQ("5 A", Identifiers());
}

TEST_F(WorkflowUploadTest, AMissingOptionOpensNoSession) {
    SetIdentifier("4711");
    for (auto const& [keyword, value] : AllFields()) {
        Fields fields = AllFields();
        fields.erase(keyword);
        OpenWith(fields);
        Job();
        EXPECT_EQ(std::string::npos, TakeLog().find("open")) << keyword;
        EXPECT_EQ("5 A", Identifiers()) << keyword;
    }
}

TEST_F(WorkflowUploadTest, AServerOrALibraryThatLacksSomethingChangesNothing) {
    std::string const create = "create session|/Jobs/Incoming||/tmp/Proof and Print.xml\n";
    std::string const close = "close session\n";
    struct {
        char const* kind;
        std::string log;
        char const* identifiers;
    } const cases[] = {
        {"no_session", kOpen, "5 A"},
        {"no_open", "", "5 A"},
        {"no_create", kOpen + close, "5 A"},
        {"no_close", kOpen + create, "4711 4711"},
        {"answers", kOpen + create + close, "4711 4711"},
    };
    SetIdentifier("4711");
    for (auto const& row : cases) {
        OpenWith(AllFields());
        UseLibrary(row.kind);
        EXPECT_EQ(1U, At(Job(), 73).size()) << "the job goes on";
        EXPECT_EQ("loaded\n" + row.log + "unloaded\n", TakeLog()) << row.kind;
        EXPECT_EQ(row.identifiers, Identifiers()) << row.kind;
    }
    // Only a new job gives an identifier.
    OpenWith(AllFields());
    mData->UploadSarnokeXMLFiles(1);
    EXPECT_EQ("loaded\n" + (kOpen + close) + "unloaded\n", TakeLog());
    EXPECT_EQ("5 A", Identifiers());
}

TEST_F(WorkflowUploadTest, TextsWithoutRoomAreHandedOverEmpty) {
    std::pair<char const*, std::size_t> const cases[] = {{"*ZUUserName", 127},
                                                         {"*ZUUserPassword", 127},
                                                         {"*ZUIP", 127},
                                                         {"*ZUWorkflowName", 255},
                                                         {"*ZUWorkflowFolder", 255}};
    for (auto const& [keyword, room] : cases) {
        Fields fields = AllFields();
        fields.erase(keyword + 1);
        OpenWith(fields, true, true, TestSession::Popup(keyword + 1));
        for (std::size_t const size : {room, room + 1}) {
            Give(keyword, std::string(size, 'x'));
            Job();
            std::string const log = TakeLog();
            EXPECT_EQ(size == room, log.find(std::string(room, 'x')) != std::string::npos) << log;
            EXPECT_EQ(size == room, log.find("xxxxx") != std::string::npos) << keyword;
            EXPECT_NE(std::string::npos, log.find("create session")) << keyword;
        }
    }
    OpenWith(AllFields());
    SetJobName(std::string(256, 'n'));
    Job();
    EXPECT_NE(std::string::npos, TakeLog().find("/Jobs/Incoming||"));
}

TEST_F(WorkflowUploadTest, AnIdentifierIsTakenWhateverItLooksLike) {
    std::string const longest(255, '9');
    struct {
        std::string bytes;
        std::string identifiers;
    } const cases[] = {
        {"12 rest", "12 A"},
        {"", "0 A"},
        {std::string("4711\0junk", 9), "4711 4711"},
        {"4711\xFF", "5 A"},
        {longest, "99999 " + longest},
        {std::string(254, '9') + "\xC3\xBC", "5 A"},
    };
    for (auto const& row : cases) {
        OpenWith(AllFields());
        Give("*ZUSKNewJobID", longest);
        ControlOf(*mPPD, "*ZUSKNewJobID")->SetCurrentControlWithCFString(CFSTR("A"));
        SetIdentifier(row.bytes);
        Job();
        EXPECT_EQ(row.identifiers, Identifiers()) << row.bytes;
    }
}

}  // namespace
