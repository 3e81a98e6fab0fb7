// The desktop's portal, played by this test on a bus of its own.
#include "TessikAutomation/Views/Theme/SystemColorScheme.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTest>
#include <gtest/gtest.h>

namespace tessik {
namespace {

QVariant wrapped(const QVariant& value) { return QVariant::fromValue(QDBusVariant(value)); }

struct Portal final : QDBusVirtualObject {
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override {
        if (call.member() == QLatin1String("ReadOne") && !knowsReadOne) return false;
        asked.append(call.member());
        const QVariant value = call.member() == QLatin1String("Read") ? wrapped(setting) : QVariant(setting);
        return bus.send(call.createReply(wrapped(value)));
    }
    void change(QDBusConnection bus, const QString& key, uint value) {
        QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                         QStringLiteral("org.freedesktop.portal.Settings"),
                                                         QStringLiteral("SettingChanged"));
        signal << QStringLiteral("org.freedesktop.appearance") << key << wrapped(value);
        bus.send(signal);
    }

    uint setting = 2;
    bool knowsReadOne = true;
    QStringList asked;
};

struct PortalTest : testing::TestWithParam<bool> {
    void SetUp() override {
        daemon.start(QStringLiteral("dbus-daemon"),
                     {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        if (!daemon.waitForStarted()) GTEST_SKIP() << "there is no dbus-daemon";
        ASSERT_TRUE(daemon.waitForReadyRead());
        const QString address = QString::fromLatin1(daemon.readLine()).trimmed();
        far = QDBusConnection::connectToBus(address, QStringLiteral("far"));
        near = QDBusConnection::connectToBus(address, QStringLiteral("near"));
        ASSERT_TRUE(far.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
        ASSERT_TRUE(far.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), &portal));
    }
    void TearDown() override {
        QDBusConnection::disconnectFromBus(QStringLiteral("far"));
        QDBusConnection::disconnectFromBus(QStringLiteral("near"));
        daemon.kill();
        daemon.waitForFinished();
    }

    QProcess daemon;
    Portal portal;
    QDBusConnection far{QString()}, near{QString()};
};

TEST_P(PortalTest, IsAskedAndFollowed) {
    portal.knowsReadOne = GetParam();
    SystemColorScheme system(ColorScheme::dark);
    system.follow(near);
    EXPECT_TRUE(QTest::qWaitFor([&] { return system.scheme == ColorScheme::light; }));
    EXPECT_EQ(portal.asked.last(), GetParam() ? QStringLiteral("ReadOne") : QStringLiteral("Read"));
    portal.change(far, QStringLiteral("contrast"), 1);
    portal.change(far, QStringLiteral("color-scheme"), 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return system.scheme == ColorScheme::dark; }));
    portal.change(far, QStringLiteral("color-scheme"), 2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return system.scheme == ColorScheme::light; }));
    portal.change(far, QStringLiteral("color-scheme"), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return system.scheme == ColorScheme::dark; })) << "as it was at the start";
}

INSTANTIATE_TEST_SUITE_P(NewAndOld, PortalTest, testing::Bool());

} // namespace
} // namespace tessik
