// Boot loaders: announcements, erase, each manner of taking an image, verdicts, faults. Streams are written as the program sends
// them, answers compared as hex.

#include "bench.h"
#include "units/firmware.h"
#include "units/srecords.h"

namespace firmlane::sim {
namespace {

constexpr Version kNew = {6, 7, 8};
constexpr const char* kWantDsp = "02 00 00 00 1E 01 1F 3E 3E";
constexpr const char* kWantHub = "02 00 00 00 1E 21 3F 3E 3E";
constexpr const char* kWantFront = "02 00 00 00 1E 50 6E 3E 3E";

TEST(Announcements, ComeInTurnAtTheBootSpeedThenTheFirmwareStarts) {
  const std::string round =
      "02 00 00 00 06 20 26 3E 3E 02 00 00 00 06 01 07 3E 3E 02 00 00 00 06 30 36 3E 3E "
      "02 00 00 00 06 40 46 3E 3E 02 00 00 00 06 50 56 3E 3E";
  Bench slow("lwx52", 9600);
  slow.unit.powerOn();
  slow.run(8 * kSecond);
  EXPECT_EQ(slow.heard(), round + " " + round + " " + round + " " + round);
  EXPECT_EQ(slow.unit.state().phase, Phase::Running);

  Bench fast("lwx52", 57600);
  fast.unit.powerOn();
  fast.run(8 * kSecond);
  EXPECT_EQ(fast.heard(), "02 00 00 00 06 01 07 3E 3E");

  Bench velarc2("velarc2b", 9600);
  velarc2.unit.powerOn();
  velarc2.run(kSecond + 700 * kMillisecond);
  EXPECT_EQ(velarc2.heard(),
            "02 00 00 00 06 25 2B 3E 3E 02 00 00 00 06 06 0C 3E 3E 02 00 00 00 06 35 3B 3E 3E 02 00 00 00 06 3A 40 3E 3E");
}

TEST(Announcements, AreAnsweredAtTheRightSpeedOnly) {
  for (const int baud : {9600, 19200, 57600}) {
    Bench bench("velarc", baud);
    EXPECT_EQ(bench.start(kWantDsp), baud == 19200 ? "02 00 00 00 1F 02 21 3E 3E" : "") << baud;
  }
}

/// A transfer: which processor of which unit, how the stream is made from the image file's bytes.
struct Transfer {
  const char* name;
  const char* model;
  const char* processor;
  int baud;
  Handshake handshake;
  const char* want;
  const char* erased;
  const char* good;
  const char* bad;
};

constexpr std::array<Transfer, 5> kTransfers = {{
    {"Plain", "lwx51", "DSP", 9600, Handshake::None, kWantDsp, "02 00 00 00 1F 02 21 3E 3E", "02 00 00 00 1F 03 22 3E 3E",
     "02 00 00 00 1F 04 23 3E 3E"},
    {"PlainVelarc2", "velarc2", "DSP", 9600, Handshake::None, kWantDsp, "02 00 00 00 1F 07 26 3E 3E",
     "02 00 00 00 1F 08 27 3E 3E", "02 00 00 00 1F 09 28 3E 3E"},
    {"SevenBit", "velarc", "DSP", 19200, Handshake::None, kWantDsp, "02 00 00 00 1F 02 21 3E 3E", "02 00 00 00 1F 03 22 3E 3E",
     "02 00 00 00 1F 04 23 3E 3E"},
    {"Records", "velarc2", "Hub", 9600, Handshake::Rts, kWantHub, "02 00 00 00 1F 26 45 3E 3E", "02 00 00 00 1F 27 46 3E 3E",
     "02 00 00 00 1F 28 47 3E 3E"},
    {"Rf2", "lwx52", "RF2", 9600, Handshake::Rts, "02 00 00 00 1E 40 5E 3E 3E", "02 00 00 00 1F 41 60 3E 3E",
     "02 00 00 00 1F 42 61 3E 3E", "02 00 00 00 1F 43 62 3E 3E"},
}};

class TakesImage : public testing::TestWithParam<Transfer> {
 protected:
  [[nodiscard]] static ImageKind kind(const Bench& bench) { return bench.unit.state().find(GetParam().processor)->model->image; }

  [[nodiscard]] static Bytes stream(const Bench& bench, const Bytes& file) {
    switch (bench.unit.state().find(GetParam().processor)->model->loader) {
      case LoaderKind::Plain:
        return plainStream(file);
      case LoaderKind::SevenBit:
        return sevenBitStream(file);
      default:
        return file;
    }
  }

  /// The verdict for a stream, and the unit's own words on it.
  static std::string verdict(Bench& bench, const Bytes& stream) {
    EXPECT_EQ(bench.start(GetParam().want), GetParam().erased);
    bench.driver.configure({GetParam().baud, GetParam().handshake});
    bench.send(stream);
    bench.run(30 * kSecond);
    return bench.heard();
  }
};

TEST_P(TakesImage, WholeImageIsProgrammed) {
  Bench bench(GetParam().model, GetParam().baud);
  EXPECT_EQ(verdict(bench, stream(bench, imageFile(kind(bench), kNew, 3000))), GetParam().good);
  EXPECT_EQ(bench.unit.state().find(GetParam().processor)->version, kNew);
}

TEST_P(TakesImage, SpoiltImageIsRefusedAndLeavesTheProcessorBlank) {
  const struct {
    const char* what;
    std::function<void(Bytes&)> spoil;
  } cases[] = {
      {"last 40 bytes missing", [](Bytes& sent) { sent.erase(sent.end() - 40, sent.end()); }},
      {"one byte changed", [](Bytes& sent) { sent[sent.size() / 2] ^= 1; }},
      {"one byte lost", [](Bytes& sent) { sent.erase(sent.begin() + 500); }},
      {"last byte before the end wrong", [](Bytes& sent) { sent[sent.size() - 3] ^= 1; }},
      {"first byte missing", [](Bytes& sent) { sent.erase(sent.begin()); }},
  };
  for (const auto& spoilt : cases) {
    Bench bench(GetParam().model, GetParam().baud);
    Bytes sent = stream(bench, imageFile(kind(bench), kNew, 3000));
    spoilt.spoil(sent);
    EXPECT_EQ(verdict(bench, sent), GetParam().bad) << spoilt.what;
    EXPECT_EQ(bench.unit.state().versionOf(GetParam().processor), "blank") << spoilt.what;
  }
}

TEST_P(TakesImage, ImageOfAnotherProcessorIsRefused) {
  for (const ImageKind other : {ImageKind::WirelessHub, ImageKind::WirelessDsp, ImageKind::Velarc2Dsp, ImageKind::Velarc2Front}) {
    Bench bench(GetParam().model, GetParam().baud);
    if (other == kind(bench)) {
      continue;
    }
    EXPECT_EQ(verdict(bench, stream(bench, imageFile(other, kNew, 3000))), GetParam().bad) << imageFileName(other);
  }
}

INSTANTIATE_TEST_SUITE_P(Loaders, TakesImage, testing::ValuesIn(kTransfers),
                         [](const auto& transfer) { return transfer.param.name; });

TEST(BootLoader, DemandsItsSpeedAndHandshakeDuringTheStream) {
  const Bytes hub = imageFile(ImageKind::WirelessHub, kNew, 500);
  const struct {
    LineSettings settings;
    const char* verdict;
  } cases[] = {{{9600, Handshake::Rts}, "02 00 00 00 1F 22 41 3E 3E"},
               {{9600, Handshake::None}, "02 00 00 00 1F 23 42 3E 3E"},
               {{9600, Handshake::XonXoff}, "02 00 00 00 1F 23 42 3E 3E"},
               {{19200, Handshake::Rts}, ""}};  // its verdict is not heard at another speed
  for (const auto& line : cases) {
    Bench bench("lwx51");
    bench.start(kWantHub);
    bench.driver.configure(line.settings);
    bench.send(hub);
    bench.run(10 * kSecond);
    EXPECT_EQ(bench.heard(), line.verdict) << line.settings.baud;
  }
}

TEST(BootLoader, SilenceEndsRecordsWithoutEndRecord) {
  Bench bench("lwx51");
  bench.start(kWantHub);
  bench.driver.configure({9600, Handshake::Rts});
  Bytes hub = imageFile(ImageKind::WirelessHub, kNew, 500);
  hub.erase(hub.end() - 12, hub.end());  // without S9 and its line end
  bench.send(hub);
  bench.run(10 * kSecond);
  EXPECT_EQ(bench.heard(), "02 00 00 00 1F 22 41 3E 3E");
}

/// Sends a front panel image as asked for, and tells what was asked: "N" next batch, "V" vector, then the verdict.
std::string sendFront(Bench& bench, const Bytes& code, const std::string& want = kWantFront) {
  bench.start(want);
  bench.send(Bytes{static_cast<std::uint8_t>(code.size() / 128), static_cast<std::uint8_t>(code.size() % 128)});
  std::string asked;
  std::size_t at = 0;
  bool inVector = false;
  while (true) {
    Bytes batch;
    for (std::size_t i = 0; i < 16; ++i, ++at) {
      const std::uint8_t byte = at < code.size() ? code[at] : 0;
      batch.push_back(byte / 16);
      batch.push_back(byte % 16);
    }
    bench.send(batch);
    bench.run(400 * kMillisecond);
    const std::string answer = bench.heard();
    if (answer == "02 00 00 00 1F 56 75 3E 3E") {
      asked += "N";
    } else if (answer == "02 00 00 00 1F 57 76 3E 3E") {
      at = inVector ? at : code.size() - 32;
      inVector = true;
      asked += "V";
    } else {
      bench.run(15 * kSecond);
      return asked + " " + answer + bench.heard();
    }
  }
}

TEST(FrontPanel, AsksForEachBatchThenForBothHalvesOfTheVectorTable) {
  // 100 bytes: 68 of code in five batches, the last of which runs over into the vector table.
  Bench bench("lwx51");
  EXPECT_EQ(sendFront(bench, makeFirmware(ImageKind::WirelessFront, kNew, 100)), "NNNNVV 02 00 00 00 1F 52 71 3E 3E");
  EXPECT_EQ(bench.unit.state().versionOf("Front"), "6.7");

  Bench second("velarc2b");
  EXPECT_EQ(sendFront(second, makeFirmware(ImageKind::Velarc2Front, kNew, 64), "02 00 00 00 1E 3A 58 3E 3E"),
            "NVV 02 00 00 00 1F 3C 5B 3E 3E");
  EXPECT_EQ(second.unit.state().versionOf("Front B"), "6.7.8");
  EXPECT_EQ(second.unit.state().versionOf("Front A"), "1.2.3");
}

TEST(FrontPanel, RefusesADamagedImageAndFallsSilentWhenToldTo) {
  Bytes code = makeFirmware(ImageKind::WirelessFront, kNew, 100);
  code.back() ^= 1;
  Bench damaged("lwx51");
  EXPECT_EQ(sendFront(damaged, code), "NNNNVV 02 00 00 00 1F 53 72 3E 3E");
  Bench dropping("lwx51");
  dropping.unit.faults.dropsAcknowledgements = true;
  EXPECT_EQ(sendFront(dropping, code), "NNN 02 00 00 00 1F 53 72 3E 3E");  // gives up in the end
}

TEST(BootFaults, SpoilTheRunWhereTheySay) {
  const struct {
    Faults faults;
    const char* erased;
    const char* verdict;
  } cases[] = {
      {{.silent = true}, "", ""},
      {{.wrongChecksum = true}, "02 00 00 00 1F 02 22 3E 3E", "02 00 00 00 1F 03 23 3E 3E"},
      {{.lateErase = true}, "", ""},
      {{.lateVerdict = true}, "02 00 00 00 1F 02 21 3E 3E", ""},
      {{.refuses = true}, "02 00 00 00 1F 02 21 3E 3E", "02 00 00 00 1F 04 23 3E 3E"},
      {{.refusesErase = true}, "02 00 00 00 1F 04 23 3E 3E", ""},
      {{.diesInStream = true}, "02 00 00 00 1F 02 21 3E 3E", ""},
      {{.noVerdict = true}, "02 00 00 00 1F 02 21 3E 3E", ""},
      {{.holdsLine = true}, "02 00 00 00 1F 02 21 3E 3E", "02 00 00 00 1F 03 22 3E 3E"},  // only meets RTS handshake
  };
  for (const auto& fault : cases) {
    Bench bench("lwx51");
    bench.unit.faults = fault.faults;
    EXPECT_EQ(bench.start(kWantDsp, 10 * kSecond), fault.erased) << faultsText(fault.faults);
    bench.send(plainStream(makeFirmware(ImageKind::WirelessDsp, kNew, 1000)));
    bench.run(10 * kSecond);
    EXPECT_EQ(bench.heard(), fault.verdict) << faultsText(fault.faults);
  }
}

TEST(BootFaults, EarlyVerdictComesDuringTheStreamAndOnlyOnce) {
  Bench bench("lwx51");
  bench.unit.faults.earlyVerdict = true;
  bench.start(kWantDsp);
  bench.send(plainStream(makeFirmware(ImageKind::WirelessDsp, kNew, 1000)));
  bench.run(500 * kMillisecond);
  EXPECT_EQ(bench.heard(), "02 00 00 00 1F 03 22 3E 3E");
  bench.run(10 * kSecond);
  EXPECT_EQ(bench.heard(), "");
}

TEST(BootLoader, UnitWithBlankDspKeepsAnnouncingUntilItIsProgrammed) {
  Bench bench("lwx51");
  bench.start(kWantDsp);
  bench.unit.powerOff();
  bench.unit.powerOn();
  bench.run(20 * kSecond);
  EXPECT_EQ(bench.unit.state().phase, Phase::Starting);
  EXPECT_THAT(bench.ask(kWantDsp, 10 * kSecond), testing::EndsWith("02 00 00 00 1F 02 21 3E 3E"));
  bench.send(plainStream(makeFirmware(ImageKind::WirelessDsp, kNew, 500)));
  bench.run(10 * kSecond);
  EXPECT_EQ(bench.heard(), "02 00 00 00 1F 03 22 3E 3E");
  bench.unit.powerOff();
  bench.unit.powerOn();
  bench.run(20 * kSecond);
  EXPECT_EQ(bench.unit.state().phase, Phase::Running);
}

TEST(Microphones, EachGroupIsAcknowledgedAndTheTableKept) {
  Bench bench("lwx51");
  bench.unit.powerOn();
  bench.run(kSecond);
  EXPECT_EQ(bench.ask("02 00 00 00 50 01 51 3E 3E"), "");
  Bytes table;
  for (std::uint8_t group = 0; group < 105; ++group) {
    const Bytes bytes = {group, 1, 2, 3, 4, 5};
    table.insert(table.end(), bytes.begin(), bytes.end());
    bench.send(bytes);
    bench.run(50 * kMillisecond);
    ASSERT_EQ(bench.heard(), "41") << int{group};
  }
  bench.run(kSecond);
  EXPECT_EQ(bench.unit.state().microphoneTable, table);
  EXPECT_EQ(bench.unit.state().phase, Phase::Running);
}

}  // namespace
}  // namespace firmlane::sim
