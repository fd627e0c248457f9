// The soak in brief: a few hundred frames of the default graph with every kind
// of damaged frame, node-map writes and restarts from a second thread, and the
// accounting that must catch a frame lost or counted twice.
#include "built_package.h"
#include "frameledger.h"
#include "soakrun.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

TEST(Soak, EveryFrameOfAShortRunIsAccountedFor)
{
    const PackageLoader package(builtPackagePath());
    const ModuleCatalog catalog(package);
    SoakOptions options;
    options.seconds = 600.0;
    options.frames = 400;
    options.camera = {96, 72, Tarvik::PixelType_BayerRG8, 0.2, 0.1, 0.1, 0.1};
    options.restartEvery = 20;
    options.progress = false;

    const SoakReport report = runSoak(catalog, options);

    EXPECT_TRUE(report.passed()) << report.text();
    EXPECT_EQ(report.framesIn, 400u);
    EXPECT_EQ(report.stoppedByGate + report.droppedByDecoupler + report.framesOut, report.framesIn);
    for (const char* const status : {"ok", "compressed", "failed", "truncated", "corrupted"})
        EXPECT_GT(report.framesByStatus.count(status) ? report.framesByStatus.at(status) : 0, 0u) << status;
    const uint64_t damaged = report.framesByStatus.at("truncated") + report.framesByStatus.at("corrupted");
    uint64_t decompressorErrors = 0;
    for (const auto& [text, count] : report.errors.at("decompressor"))
        decompressorErrors += count;
    EXPECT_GE(decompressorErrors, damaged) << "every damaged frame is an error";

    const nlohmann::ordered_json json = report.toJson();
    for (const char* const field :
         {"passed", "seconds", "framesIn", "framesOut", "stoppedByGate", "droppedByDecoupler",
          "framesByStatus", "restarts", "featureWrites", "errors", "logLines", "residentMemory",
          "accountingFailures", "otherFailures"})
        EXPECT_TRUE(json.contains(field)) << field;
    for (const char* const sample : {"start", "middle", "end"})
        EXPECT_GT(json["residentMemory"][sample].get<uint64_t>(), 0u) << sample;
}

// A consistent run of 10 frames: 2 stopped by the Gate, 3 dropped, 5 shown.
struct Accounts
{
    FrameTally tally;
    std::map<std::string, NodeCounts> nodes;

    Accounts()
    {
        tally.framesIn = 10;
        tally.decoded = tally.converted = 7;
        tally.decodeErrors = tally.convertErrors = 3;
        tally.convertedInputs = 10;
        tally.stoppedByGate = 2;
        tally.passedGate = 8;
        tally.shown = 5;
        tally.droppedByDecoupler = 3;
        nodes = {{FrameLedger::camera, {10, 10, 0}},    {FrameLedger::decompressor, {10, 10, 3}},
                 {FrameLedger::converter, {10, 10, 0}}, {FrameLedger::histogram, {10, 10, 0}},
                 {FrameLedger::sharpness, {10, 8, 1}},  {FrameLedger::gate, {10, 8, 0}},
                 {FrameLedger::decoupler, {8, 5, 0}},   {FrameLedger::display, {5, 0, 0}}};
    }
};

TEST(FrameLedger, AccountingNamesTheEquationThatBreaks)
{
    EXPECT_EQ(accountingFailures(Accounts().tally, Accounts().nodes), std::vector<std::string>{});

    const struct
    {
        const char* fault;
        void (*spoil)(Accounts&);
        const char* broken;
    } cases[] = {
        {"a delivery that never reached the display",
         [](Accounts& a) { ++a.nodes[FrameLedger::decoupler].out; },
         "Decoupler deliveries = frames shown: 6 != 5"},
        {"a frame the Decoupler dropped counted twice", [](Accounts& a) { ++a.tally.droppedByDecoupler; },
         "frames in = stopped by the Gate + dropped by the Decoupler + shown: 10 != 11"},
        {"a Converter error not raised by anyone", [](Accounts& a) { ++a.tally.convertErrors; },
         "Converter error values = errors handed on + raised: 4 != 3"},
        {"a frame the Decompressor never saw", [](Accounts& a) { --a.nodes[FrameLedger::decompressor].in; },
         "Decompressor runs = frames in: 9 != 10"},
        {"a damaged frame that decoded",
         [](Accounts& a)
         {
             a.tally.frameFaultCount = 1;
             a.tally.frameFaults = {"frame 7 (corrupted) decoded as an image"};
         },
         "1 frames went astray, first: frame 7 (corrupted) decoded as an image"},
    };
    for (const auto& c : cases)
    {
        Accounts accounts;
        c.spoil(accounts);
        const std::vector<std::string> failures = accountingFailures(accounts.tally, accounts.nodes);
        EXPECT_NE(std::find(failures.begin(), failures.end(), c.broken), failures.end()) << c.fault;
    }
}

} // namespace
