// Bytes to and from the radios, and what they answer.

#include <gtest/gtest.h>

#include "link/byte_exchange.h"
#include "link/error_replies.h"
#include "link/port_set.h"
#include "link/programming_mode.h"
#include "services/messages.h"
#include "tests/link_testing.h"

namespace zep::link {
namespace {

using std::chrono::milliseconds;
using namespace std::chrono_literals;
using testing::TestLink;

constexpr const char* kSilent =
    "information The radio is not responding, please check the connections. -> OK\n";
constexpr const char* kNoResponse =
    "information There is no response from any of the communication ports. -> OK\n";

TEST(ByteExchange, AByteIsAwaitedByItsRules) {
  struct Row {
    const char* name;
    std::string received;
    std::uint8_t expected;
    bool end_on_zero;
    int result;
    bool timer_runs_on;
    std::size_t left;
    const char* states;
  };
  const std::vector<Row> rows = {
      {"the expected byte", "a", 'a', false, 'a', false, 0, "1222"},
      {"others are skipped", "xyza1", 'a', false, 'a', false, 1, "1222"},
      {"any byte but zero", std::string("\0\0b", 3), 0, false, 'b', false, 0, "1222"},
      {"zero ends and leaves the timer", std::string("\0b", 2), 'b', true, 0, true, 1, "1222"},
      {"zero is skipped without that option", std::string("\0b", 2), 'b', false, 'b', false, 0,
       "1222"},
      {"wrong bytes only", "xyz", 'a', false, 0, false, 0, "4222"},
      {"a flash code is not shown here", "S", '.', false, 0, false, 0, "4222"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    TestLink test({1});
    test.port(1).Receive(row.received);
    EXPECT_EQ(GetByteFromSpecficComms(test.job, 1, row.expected, row.end_on_zero), row.result);
    EXPECT_EQ(test.job.timSerialTimeOut.IsEnabled(), row.timer_runs_on);
    EXPECT_EQ(test.port(1).InputCount(), row.left);
    EXPECT_EQ(test.States(), row.states);
    const bool silent = row.states[0] == '4';
    EXPECT_EQ(test.user.Boxes(), silent ? kSilent : "");
    EXPECT_EQ(test.job.DownloadError, silent);
  }
}

TEST(ByteExchange, SilenceEndsAWaitAfterFourSecondsWhateverIsSkipped) {
  TestLink test({1});
  test.port(1).Receive("x", milliseconds(3900));
  EXPECT_EQ(GetStringFromSpecficComms(test.job, 1, ">"), "");
  EXPECT_GE(test.clock.Now(), milliseconds(4000));
  EXPECT_LE(test.clock.Now(), milliseconds(4002));
  EXPECT_EQ(test.Failure(), services::Failure::kNoAnswer);
}

TEST(ByteExchange, TheTimeOfAQuestionIsNotTheRadios) {
  TestLink test({1});
  test.port(1).Receive("v", milliseconds(60000));
  test.user.while_shown = [&] { test.clock.Sleep(milliseconds(59000)); };
  test.user.on_turn = [&](int turn) {
    test.clock.Sleep(milliseconds(2));
    if (turn == 3) NLSMsgBox(test.session, "Cancel?");
  };
  WaitForChar(test.job, "v", 1);
  EXPECT_FALSE(test.job.DownloadError);

  test.user.while_shown = nullptr;
  const platform::Duration before = test.clock.Now();
  GetStringFromSpecficComms(test.job, 1, "v");
  EXPECT_TRUE(test.job.DownloadError);
  EXPECT_LE(test.clock.Now() - before, milliseconds(4004)) << "turns of the user interface count";
}

TEST(ByteExchange, CancelEndsAWaitAtOnceAndLeavesTheInput) {
  TestLink test({1});
  test.user.on_turn = [&](int turn) {
    if (turn != 3) return;
    test.job.RequestCancel();
    test.port(1).Receive(">");
  };
  EXPECT_EQ(GetStringFromSpecficComms(test.job, 1, ">"), "");
  EXPECT_EQ(test.user.turns, 3);
  EXPECT_EQ(test.port(1).InputCount(), 1U);
  EXPECT_EQ(test.States(), "1222");
  EXPECT_FALSE(test.job.DownloadError);
}

TEST(ByteExchange, APortThatIsNotActiveIsNeverTouched) {
  TestLink test;
  test.port(2).Receive("a");
  EXPECT_EQ(GetByteFromSpecficComms(test.job, 2, 'a'), 0);
  EXPECT_EQ(GetAnyByte(test.job, 2), 0);
  EXPECT_EQ(GetStringFromSpecficComms(test.job, 2, ""), "");
  SendByteToSpecificComms(test.job, 'a', 2);
  SendByteToAllComms(test.job, 'a', {.wait = true, .expected = 'a'});
  EXPECT_EQ(test.Wire(), "");
  EXPECT_EQ(test.user.turns, 0);
}

TEST(ByteExchange, EachPortHasAnsweredBeforeTheNextIsSentTo) {
  TestLink test({1, 2, 4});
  for (const int port : {1, 2, 4}) test.port(port).Answer("r", "r");
  SendByteToAllComms(test.job, 'r', {.wait = true, .expected = 'r'});
  EXPECT_EQ(test.Wire(), "1<r 1>r 2<r 2>r 4<r 4>r");

  SendBytesToAllComms(test.job, std::vector<std::uint8_t>{'A', 0});
  EXPECT_EQ(test.Wire(), "1<A 1<00 2<A 2<00 4<A 4<00");

  for (const int port : {4, 2, 1}) test.port(port).Receive(".");
  EXPECT_EQ(WaitForDotFromActiveComms(test.job), '.');
  EXPECT_EQ(test.Wire(), "1>. 2>. 4>.");
}

TEST(ByteExchange, ALatePortStopsTheSweepUnlessTheOthersGoOn) {
  for (const bool others_go_on : {false, true}) {
    SCOPED_TRACE(others_go_on);
    TestLink test({1, 2, 3});
    test.job.others_go_on = others_go_on;
    test.port(1).Answer("0", "0");
    test.port(3).Answer("0", "0");
    SendByteToAllComms(test.job, '0', {.wait = true, .expected = '0'});
    EXPECT_EQ(test.Wire(), others_go_on ? "1<0 1>0 2<0 3<0 3>0" : "1<0 1>0 2<0");
    EXPECT_EQ(test.States(), "1412");
    EXPECT_EQ(test.job.DownloadError, !others_go_on);
    EXPECT_EQ(test.user.Boxes(), kSilent);
  }
}

TEST(ByteExchange, TheLastPortToFailEndsTheRunOfSeveral) {
  TestLink test({1, 2});
  test.job.others_go_on = true;
  test.port(1).Receive("{C04}>");
  EXPECT_EQ(WaitForDotFromActiveComms(test.job), 0);
  EXPECT_EQ(test.States(), "4422");
  EXPECT_TRUE(test.job.DownloadError);
  EXPECT_EQ(test.user.Boxes(), "critical [Radio reported error] {C04} Item not recognized -> OK\n" +
                                   std::string(kSilent) + kNoResponse);
}

TEST(ByteExchange, OnlyThePortThatIsWaitedForIsMarked) {
  TestLink test({1, 2, 3});
  for (const int port : {2, 3}) test.port(port).Receive(".");
  WaitForDotFromActiveComms(test.job);
  EXPECT_EQ(test.States(), "4112") << "after the time-out the others are not looked at";

  TestLink refused({1, 2});
  refused.job.others_go_on = true;
  refused.job.SetDownloadError(services::Failure::kRefused);
  GetByteFromSpecficComms(refused.job, 1, '.');
  EXPECT_EQ(refused.States(), "1122");
  EXPECT_TRUE(refused.job.DownloadError) << "a refusal is not taken back";
}

TEST(ByteExchange, CancelEndsARunOfSeveralForAll) {
  TestLink test({1, 2});
  test.job.others_go_on = true;
  test.port(1).Receive("{C0");
  test.user.on_turn = [&](int turn) {
    if (turn == 5) test.job.RequestCancel();
  };
  WaitForDotFromActiveComms(test.job);
  EXPECT_EQ(test.States(), "1122");
  EXPECT_EQ(test.user.Boxes(), "");
  EXPECT_EQ(test.Failure(), services::Failure::kCancelled);
}

TEST(ByteExchange, EchoesAreAwaitedWithoutFlashTexts) {
  TestLink test({1, 2});
  test.job.others_go_on = true;
  test.port(1).Answer("a", "xa");
  SendByteToSpecificComms(test.job, 'a', 1, true);
  EXPECT_EQ(test.Wire(), "1<a 1>x 1>a");
  test.port(1).Answer("b", "S");
  SendByteToSpecificComms(test.job, 'b', 1, true);
  EXPECT_EQ(test.States(), "4122");
  EXPECT_EQ(test.user.Boxes(), kSilent);
  SendByteToActiveComms(test.job, 'c');
  EXPECT_EQ(test.Wire(), "1<b 1>S 2<c");
}

TEST(ByteExchange, AFailingDeviceIsReportedAndTakenOut) {
  TestLink test({1});
  test.user.on_turn = [&](int turn) {
    if (turn == 2) test.port(1).Fail(5);
  };
  EXPECT_EQ(GetByteFromSpecficComms(test.job, 1, 'a'), 0);
  EXPECT_EQ(test.user.Boxes(),
            std::string("critical Error: 5 Input/output error[GetByteFromSpecficComms ] -> OK\n") +
                kNoResponse);
  EXPECT_EQ(test.States(), "4222");
  EXPECT_EQ(test.Failure(), services::Failure::kPort);

  TestLink block({1});  // in the middle of a block
  block.port(1).Receive("ab");
  EXPECT_EQ(GetAnyByte(block.job, 1), 'a');
  block.port(1).Fail(5);
  GetAnyByte(block.job, 1);
  EXPECT_EQ(block.user.Boxes(),
            std::string("critical Error: 5 Input/output error[GetAnyByte] -> OK\n") + kNoResponse);
  EXPECT_EQ(block.States(), "4222");
}

TEST(ByteExchange, AVanishedDeviceIsNotSpokenToAgain) {
  TestLink test({1, 2});
  test.job.others_go_on = true;
  test.user.on_turn = [&](int turn) {
    if (turn == 2) test.port(1).Fail(5);
    if (turn == 4) test.port(2).Fail(5);
  };
  PutActiveCommsInProgMode(test.job);
  EXPECT_EQ(test.Wire(), "1<^");
  EXPECT_LT(test.clock.Now(), milliseconds(100));
  WaitForDotFromActiveComms(test.job);
  EXPECT_EQ(test.user.Boxes(),
            "critical Error: 5 Input/output error[WaitForChar Func] -> OK\n"
            "critical Error: 5 Input/output error[GetByteFromSpecficComms ] -> OK\n" +
                std::string(kNoResponse));
}

TEST(ByteExchange, OutputThatNeverLeavesFailsThePort) {
  TestLink test({1, 2});
  test.job.others_go_on = true;
  test.port(1).output = [] { return 1; };
  SendBytesToAllComms(test.job, std::vector<std::uint8_t>{'A'});
  EXPECT_EQ(test.Wire(), "1<A 2<A");
  EXPECT_EQ(test.States(), "4122");
  EXPECT_FALSE(test.job.DownloadError);
  EXPECT_EQ(test.user.Boxes(), kSilent);
  EXPECT_EQ(test.user.turns, 0) << "the drain of a block does not yield";
}

TEST(ByteExchange, OutputMayTakeItsTimeAsLongAsItFlows) {
  TestLink test({1});
  // A byte every three seconds.
  test.port(1).output = [&] { return static_cast<std::size_t>((14s - test.clock.Now()) / 3s); };
  SelectBaudRate(test.job, 9600);
  EXPECT_GT(test.clock.Now(), 11s);
  EXPECT_EQ(test.port(1).settings, std::vector<std::string>{"9600,n,8,1"});
  EXPECT_EQ(test.user.Boxes(), "");
}

TEST(ByteExchange, RepliesAreReadUpToThePrompt) {
  struct Row {
    const char *name, *received, *mode, *reply, *shown;
  };
  const std::string noise(3000, '7');
  const std::vector<Row> rows = {
      {"a record", "27000300002AAC\r>", "", "00002A", ""},
      {"two records of an item", "0500020102F6\r0501010AEF\r>", "", "01020A", ""},
      {"what follows a record", "27000300002AACFF\r>", "", "00002A", ""},
      {"a record with a wrong checksum", "27000300002AAD\r>", "", "00002A",
       "{C02} Record corrupted"},
      {"a record with something else than digits", "2?000300002AB3\r>", "", "00002A",
       "{C02} Record corrupted"},
      {"an empty record", "050000FB\r>", "", "", ""},
      {"an item list", "0003002A27FF\r>", "List", "002A27", ""},
      {"a list in two lines, with tails", "000100\r00022A27EE\r>", "List", "002A27", ""},
      {"a line too short for a count", "000\r0001FF\r>", "List", "FF", ""},
      {"what follows the items", "0000002A27\r0001FF\r>", "List", "FF", ""},
      {"a stray carriage return", "\r27000300002AAC\r>", "", "00002A", ""},
      {"noise without end", noise.c_str(), "", "", "{C02} Record corrupted"},
      {"fewer items than the count says", "0003002A\r>", "List", "002A", "{C02} Record corrupted"},
      {"an error reply", "{C04}>", "", "", "{C04} Item not recognized"},
      {"silence after a line", "05000101F9\r", "", "01", "not responding"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    TestLink test({3});
    test.port(3).Receive(row.received);
    EXPECT_EQ(ReadReplyFromActiveComms(test.job, row.mode), row.reply);
    EXPECT_NE(test.user.Boxes().find(row.shown), std::string::npos) << test.user.Boxes();
    EXPECT_EQ(test.job.DownloadError, *row.shown != 0);
  }
}

TEST(ErrorReplies, KnownRepliesAreShownAndEveryReplyIsAnError) {
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"{C01}", "Command not recognized"},
      {"{C02}", "Record corrupted"},
      {"{C03}", "Record not accepted"},
      {"{C04}", "Item not recognized"},
      {"{C05}", "Record size error"},
      {"{C06}", "Item size overflow"},
      {"{C07}", "Read only item error"},
      {"{C08}", "Record too long"},
      {"{C09}", "Dynamic database full"},
      {"{C10}", "Database write error"},
      {"{X32}", "Database is corrupted"},
      {"{X31}", "Model configuration not successful"},
      {"{C1}", ""},
      {"{c01}", ""},
  };
  for (const auto& [reply, text] : rows) {
    SCOPED_TRACE(reply);
    const std::string box =
        text.empty() ? "" : "critical [Radio reported error] " + reply + " " + text + " -> OK\n";
    for (const ReportErrors report : {ReportErrors::kShow, ReportErrors::kSilent}) {
      TestLink test({1});
      test.job.ReportRadioErrors = report;
      test.port(1).Receive(reply.substr(0, 2) + "\r" + reply.substr(2) + ">x");
      WaitForChar(test.job, "v", 1);
      EXPECT_EQ(test.job.RadioErrorReply, reply);
      EXPECT_EQ(test.port(1).InputCount(), 1U);
      EXPECT_EQ(test.user.Boxes(), report == ReportErrors::kShow ? box : "");
      EXPECT_EQ(test.job.DownloadError, report == ReportErrors::kShow);
    }
  }
}

TEST(ErrorReplies, FlashCodesAreShownWhereTextIsAwaited) {
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"S", "Invalid storage."},       {"I", "Invalid Rx, Tx character."},
      {"X", "Invalid Flash."},         {"G", "Invalid page address."},
      {"A", "Invalid start address."}, {"F", "Invalid Flash program."},
      {"P", "Invalid prompt."},        {"!", "Overrun error."},
      {"#", "Noise error."},           {"$", "Frame error."},
      {"?", "Data corrupt."},          {"Z", ""},
  };
  for (const auto& [code, text] : rows) {
    SCOPED_TRACE(code);
    TestLink test({2});
    test.port(2).Receive(code);
    GetStringFromSpecficComms(test.job, 2, ">");
    EXPECT_EQ(test.user.Boxes(),
              kSilent + (text.empty() ? ""
                                      : "critical Error detected on communication port 2 :  " +
                                            text + " -> OK\n"));
    EXPECT_EQ(test.States(), "2422");
  }
}
}  // namespace
}  // namespace zep::link
