#include "share/CarrierList.h"
#include "platform/TextFiles.h"
#include "support/TestAppFolder.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cq;

namespace {

QStringList Names(const QList<Carrier>& carriers) {
    QStringList names;
    for (const Carrier& c : carriers)
        names << c.name;
    return names;
}

} // namespace

TEST(CarrierList, NameIsBeforeTheFirstSemicolonAndBadLinesAreSkippedOrEndTheList) {
    const QByteArray file = "Acme Mobile;mms.acme.example;x\r\n"
                            ";no-name.example\r\n"
                            "No Domain;\r\n"
                            "Second;mms.second.example\r\n"
                            "a line without the separator\r\n"
                            "After;mms.after.example\r\n";
    EXPECT_EQ(ParseCarrierFile(file), (QList<Carrier>{{"Acme Mobile", "mms.acme.example;x"},
                                                      {"Second", "mms.second.example"}}));
    // Blank lines are spacing, not the end of the list.
    EXPECT_EQ(Names(ParseCarrierFile("\r\nOne;one.example\r\n\r\n \t\r\nTwo;two.example\r\n")),
              QStringList({"One", "Two"}));
    // Bare LF line ends, as a Linux editor writes them, read the same.
    EXPECT_EQ(Names(ParseCarrierFile("One;one.example\nTwo;two.example\n")),
              QStringList({"One", "Two"}));
    EXPECT_TRUE(ParseCarrierFile("").isEmpty());
    EXPECT_TRUE(ParseCarrierFile("\r\n").isEmpty());
}

TEST(CarrierList, BytesThatAreNotUtf8SurviveReadingAndAddingACarrier) {
    QTemporaryDir dir;
    const QString fileSpec = dir.path() + "/MMSServerList.txt";
    // Windows-1252, as Windows editors save: the quotes are bytes that Latin-1 leaves as controls.
    const QByteArray latin1 = "\x93"
                              "Caf\xe9\x94 T\xe9l\xe9"
                              "com;mms.caf\xe9.example\r\n";
    const QByteArray utf8 = "Zo\xc3\xab Mobile;mms.zoe.example\r\n";
    test::WriteFile(fileSpec, latin1 + utf8);

    const QList<Carrier> carriers = FillCarrierList(fileSpec);
    ASSERT_GE(carriers.size(), 2);
    EXPECT_EQ(carriers.at(0).name, QStringLiteral("\u201CCaf\u00E9\u201D T\u00E9l\u00E9com"));
    EXPECT_EQ(carriers.at(0).domain, QString::fromLatin1("mms.caf\xe9.example"));
    EXPECT_EQ(carriers.at(1).name, QString::fromUtf8("Zo\xc3\xab Mobile"));

    EXPECT_TRUE(AddCarrierToFile(fileSpec, "New Carrier", "mms.new.example").isEmpty());
    EXPECT_EQ(ReadFileToBytes(fileSpec), latin1 + utf8 + "New Carrier;mms.new.example\r\n");
}

TEST(CarrierList, TableHoldsTwoHundredWithTheBuiltInCarriersAlwaysLast) {
    QTemporaryDir dir;
    const QString fileSpec = dir.path() + "/MMSServerList.txt";
    QByteArray file;
    for (int i = 1; i <= 300; ++i)
        file += QStringLiteral("Carrier %1;mms%1.example\r\n").arg(i).toUtf8();
    test::WriteFile(fileSpec, file);

    const QList<Carrier> carriers = FillCarrierList(fileSpec);
    ASSERT_EQ(carriers.size(), 200);
    EXPECT_EQ(carriers.at(0), (Carrier{"Carrier 1", "mms1.example"}));
    EXPECT_EQ(carriers.at(188), (Carrier{"Carrier 189", "mms189.example"}));
    EXPECT_EQ(carriers.mid(189), BuiltInCarriers());

    // A full table takes no more.
    EXPECT_FALSE(AddCarrierToFile(fileSpec, "One Too Many", "mms.more.example").isEmpty());
    EXPECT_EQ(ReadFileToBytes(fileSpec), file);
}

TEST(CarrierList, MissingFileStillListsTheBuiltInCarriersEachOneValid) {
    const QList<Carrier> carriers = FillCarrierList("/no/such/MMSServerList.txt");
    EXPECT_EQ(carriers, BuiltInCarriers());
    for (const Carrier& c : carriers)
        EXPECT_TRUE(CarrierEntryProblem(c.name, c.domain).isEmpty()) << c.name.toStdString();
}

TEST(CarrierList, AddedCarrierGoesBeforeTheLineThatEndsTheList) {
    QTemporaryDir dir;
    const QString fileSpec = dir.path() + "/System/MMSServerList.txt";
    test::WriteFile(fileSpec, "One;one.example\r\nnotes: keep this\r\n");
    EXPECT_TRUE(AddCarrierToFile(fileSpec, "  Two  ", " mms.two.example ").isEmpty());
    EXPECT_EQ(ReadFileToBytes(fileSpec),
              "One;one.example\r\nTwo;mms.two.example\r\nnotes: keep this\r\n");
    EXPECT_EQ(Names(FillCarrierList(fileSpec)).mid(0, 2), QStringList({"One", "Two"}));

    // Past blank lines between carriers, before those after the last one.
    test::WriteFile(fileSpec, "One;one.example\r\n\r\nTwo;two.example\r\n\r\nnotes\r\n");
    EXPECT_TRUE(AddCarrierToFile(fileSpec, "Three", "mms.three.example").isEmpty());
    EXPECT_EQ(ReadFileToBytes(fileSpec), "One;one.example\r\n\r\nTwo;two.example\r\n"
                                         "Three;mms.three.example\r\n\r\nnotes\r\n");
    EXPECT_EQ(Names(FillCarrierList(fileSpec)).mid(0, 3), QStringList({"One", "Two", "Three"}));

    // A new file is made when there was none.
    const QString fresh = dir.path() + "/System/New.txt";
    EXPECT_TRUE(AddCarrierToFile(fresh, "Acme", "mms.acme.example").isEmpty());
    EXPECT_EQ(ReadFileToBytes(fresh), "Acme;mms.acme.example\r\n");
}

TEST(CarrierList, EntriesThatWouldBreakTheFileAreRefused) {
    EXPECT_FALSE(CarrierEntryProblem("", "mms.a.example").isEmpty());
    EXPECT_FALSE(CarrierEntryProblem("A;B", "mms.a.example").isEmpty());
    EXPECT_FALSE(CarrierEntryProblem("A\r\nB", "mms.a.example").isEmpty());
    EXPECT_FALSE(CarrierEntryProblem("A", "").isEmpty());
    EXPECT_FALSE(CarrierEntryProblem("A", "mms a.example").isEmpty());
    EXPECT_FALSE(CarrierEntryProblem("A", "localhost").isEmpty());
    EXPECT_FALSE(CarrierEntryProblem("A", "x@mms.example").isEmpty());
    EXPECT_TRUE(CarrierEntryProblem("Acme (UK)", "mms.acme-uk.example").isEmpty());
}

TEST(CarrierList, PhoneAddressKeepsOnlyTheDigits) {
    EXPECT_EQ(PhoneAddress("(555) 123-4567", "vzwpix.com"), "5551234567@vzwpix.com");
    EXPECT_EQ(PhoneAddress(" +1 555 CALL-NOW 89 ", "tmomail.net"), "155589@tmomail.net");
}
