// Closing the receipt window ends the whole program cleanly, whichever way the clerk closes it, with the
// batch position and receipt style written first.
#include "support/Company.h"
#include "support/TempSettings.h"

#include <QProcess>
#include <gtest/gtest.h>

using namespace tillbook;

TEST(Closing, EveryWayEndsTheProgramWithStatusZeroAfterSavingTheSettings) {
    const test::Company company{test::CompanyBuilder().sample(5, 20)};
    for (const char* way : {"button", "menu", "closebox"}) {
        SCOPED_TRACE(way);
        test::TempSettings settings;
        for (const char* key :
             {"Database1/DB1=SAMINC", "Database1/Users/User1=ADMIN", "Database1/Users/Password1=ADMIN",
              "ConnectInfo/Database=1", "ConnectInfo/User=1"})
            settings.set(QString(key).section('=', 0, 0), QString(key).section('=', 1));

        QProcess program;
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        program.start(QStringLiteral(TILLBOOK_CLOSING_PROBE), {QString::fromLatin1(way)});
        ASSERT_TRUE(program.waitForFinished(60000));
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(program.exitCode(), 0);
        EXPECT_TRUE(settings.contains("Database1/BatchInfo/Index"));
        EXPECT_EQ(settings.raw("ReceiptStyle/3panel"), "True");
    }
}
