// Runs a fuzz entry on every file of its corpus folders, without libFuzzer,
// so that each input that once found a fault stays a test.
//
//   fuzz_replay_<target> FOLDER...
#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <cstddef>
#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    int inputs = 0;
    for (int i = 1; i < argc; ++i) {
        QDirIterator it(QString::fromLocal8Bit(argv[i]), QDir::Files);
        while (it.hasNext()) {
            QFile file(it.next());
            if (!file.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "cannot read %s\n", qPrintable(file.fileName()));
                return 1;
            }
            const QByteArray bytes = file.readAll();
            // A copy of exactly the input's size, so that reading past its
            // end is caught as it is under libFuzzer.
            QByteArray exact(bytes.constData(), bytes.size());
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(exact.constData()),
                                   std::size_t(exact.size()));
            ++inputs;
        }
    }
    std::printf("%d inputs replayed\n", inputs);
    return inputs > 0 ? 0 : 1;
}
