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
                                  folder.filePath(QStringLiteral("%2/Mix.tessik"))})
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

TEST_F(SafeFileTest, AKillAtAnyInstantLeavesASavedState) {
    std::vector<SessionDocument> documents; // can be told from one another
    for (unsigned seed = 0; seed < 8; ++seed)
        documents.push_back(sampleSession(seed, 3, 40));
    ASSERT_EQ(writeSessionFile(path, PreviousFile::keep, documents[0]).error, QString());
    std::mt19937 random(4);
    for (int kill = 0; kill < 200; ++kill) {
        int begun[2];
        ASSERT_EQ(pipe(begun), 0);
        const pid_t child = fork();
        if (child == 0) {
            for (std::size_t n = 0;; n = (n + 1) % documents.size()) {
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
            ASSERT_NE(std::find(documents.begin(), documents.end(), *result.document), documents.end())
                << "kill " << kill;
        }
    }
}

} // namespace
} // namespace tessik
