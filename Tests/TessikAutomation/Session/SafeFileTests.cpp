#include "Support/Sessions.h"
#include "TessikAutomation/Session/SafeFile.h"
#include "TessikAutomation/Session/SessionFile.h"
#include "TessikAutomation/Session/SessionReader.h"

#include <QDir>
#include <QIODevice>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>
#include <random>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessik {
namespace {

struct SafeFileTest : testing::Test {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("Mix 3.tessik"));

    QString write(const QString& to, const QByteArray& text, PreviousFile previous = PreviousFile::keep) {
        return writeFileSafely(to, previous,
                               [&](QIODevice& device) {
                                   return device.write(text) == text.size() ? QString() : device.errorString();
                               })
            .error;
    }
    QStringList files() const { return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::System); }
};

TEST_F(SafeFileTest, KeepsThePreviousFileBeside) {
    EXPECT_EQ(write(path, "one"), QString());
    EXPECT_EQ(files(), QStringList(QStringLiteral("Mix 3.tessik")));
    EXPECT_EQ(write(path, "two"), QString());
    EXPECT_EQ(write(path, "three"), QString());
    EXPECT_EQ(contentsOf(path), "three");
    EXPECT_EQ(contentsOf(path + QLatin1Char('~')), "two");
    EXPECT_EQ(files().size(), 2);
    EXPECT_EQ(write(path, "four", PreviousFile::drop), QString());
    EXPECT_EQ(contentsOf(path + QLatin1Char('~')), "two");
}

TEST_F(SafeFileTest, WritesThroughALink) {
    ASSERT_EQ(write(path, "one"), QString());
    const QString link = folder.filePath(QStringLiteral("link.tessik"));
    ASSERT_TRUE(QFile::link(path, link));
    EXPECT_EQ(write(link, "two"), QString());
    EXPECT_EQ(contentsOf(path), "two");
    EXPECT_TRUE(QFileInfo(link).isSymLink());
}

TEST_F(SafeFileTest, AFailedWriteLeavesTheOldFileWhole) {
    ASSERT_EQ(write(path, "old"), QString());
    EXPECT_NE(writeFileSafely(path, PreviousFile::keep,
                              [](QIODevice& device) {
                                  device.write("half");
                                  return QStringLiteral("no more");
                              })
                  .error,
              QString());

    // A full disk: no file of this process may grow past one megabyte.
    struct rlimit before {};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit full { 1'000'000, before.rlim_max };
    setrlimit(RLIMIT_FSIZE, &full);
    const QString error = writeSessionFile(path, PreviousFile::keep, sampleSession(1, 10, 5'000)).error;
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_TRUE(error.contains(QStringLiteral("large"))) << qUtf8Printable(error);

    EXPECT_EQ(contentsOf(path), "old");
    EXPECT_EQ(files(), QStringList(QStringLiteral("Mix 3.tessik"))); // no litter, and no backup of a save that was none
}

TEST_F(SafeFileTest, RefusesWhatIsNoRegularFile) {
    const QString pipe = folder.filePath(QStringLiteral("pipe.tessik"));
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    for (const QString& target : {pipe, folder.path(), QStringLiteral("/dev/null"), QStringLiteral("/proc/x.tessik"),
                                  folder.filePath(QStringLiteral("gone/Mix.tessik"))})
        EXPECT_TRUE(write(target, "x").startsWith(QStringLiteral("“%1” cannot be written: ").arg(target)));
    EXPECT_EQ(files(), QStringList(QStringLiteral("pipe.tessik")));
}

TEST_F(SafeFileTest, TheStampTellsTheFileFromAnyOther) {
    const auto stamp = [this] {
        return writeFileSafely(path, PreviousFile::keep, [](QIODevice&) { return QString(); }).stamp;
    };
    const FileStamp first = stamp();
    EXPECT_EQ(FileStamp::of(path), first);
    EXPECT_EQ(FileStamp::fromString(first.toString()), first);
    const FileStamp next = stamp();
    EXPECT_NE(next, first); // the same bytes, by another writer
    EXPECT_EQ(FileStamp::of(path), next);
    EXPECT_EQ(FileStamp::of(folder.filePath(QStringLiteral("absent"))), std::nullopt);
    EXPECT_EQ(FileStamp::fromString(QStringLiteral("")), std::nullopt);
}

// The states that the saving process writes can be told from one another, and each is whole.
SessionDocument state(int number) { return sampleSession(unsigned(number), 3, 40); }

bool isAState(const SessionDocument& read, int upTo) {
    // Ids are random: only what follows from the seed is compared.
    const auto same = [&read](const SessionDocument& one) {
        if (read.passes.size() != one.passes.size()) return false;
        for (qsizetype i = 0; i < one.passes.size(); ++i)
            if (read.passes[i].events != one.passes[i].events) return false;
        return read.createdAt == one.createdAt && read.channelLabels == one.channelLabels &&
               read.manualSettings == one.manualSettings && read.masterSection == one.masterSection &&
               read.startLocator == one.startLocator && read.endLocator == one.endLocator;
    };
    for (int number = 0; number < upTo; ++number)
        if (same(state(number))) return true;
    return false;
}

TEST_F(SafeFileTest, AKillAtAnyInstantLeavesASavedState) {
    constexpr int states = 8;
    ASSERT_EQ(writeSessionFile(path, PreviousFile::keep, state(0)).error, QString());
    std::mt19937 random(4);
    for (int kill = 0; kill < 200; ++kill) {
        int begun[2];
        ASSERT_EQ(pipe(begun), 0);
        const pid_t child = fork();
        if (child == 0) {
            std::vector<SessionDocument> documents;
            for (int number = 0; number < states; ++number)
                documents.push_back(state(number));
            for (std::size_t n = 0;; n = (n + 1) % states) {
                if (n == 0 && ::write(begun[1], "!", 1) != 1) _exit(1);
                writeSessionFile(path, PreviousFile::keep, documents[n]);
            }
        }
        char byte = 0;
        ASSERT_EQ(read(begun[0], &byte, 1), 1);
        usleep(std::uniform_int_distribution<useconds_t>(0, 5'000)(random)); // into whatever it is doing by now
        ::kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        close(begun[0]);
        close(begun[1]);
        ASSERT_TRUE(WIFSIGNALED(status));
        for (const QString& file : {path, path + QLatin1Char('~')}) {
            if (!QFile::exists(file)) continue;
            const SessionReadResult result = readSession(file, second(0));
            ASSERT_TRUE(result.document) << qUtf8Printable(result.error);
            ASSERT_TRUE(result.fallbacks.empty());
            ASSERT_TRUE(isAState(*result.document, states)) << "kill " << kill;
        }
    }
}

} // namespace
} // namespace tessik
