#include "session/RandomSource.h"

#include <QTime>
#include <array>
#include <chrono>

namespace {

std::uint64_t splitmix64(std::uint64_t& x) {
    std::uint64_t z = (x += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

} // namespace

ClockRandomSource::ClockRandomSource()
    : m_state(
          static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count())) {
}

void ClockRandomSource::reseedWith(std::uint32_t msecsSinceMidnight) {
    std::uint64_t mix = m_state ^ (static_cast<std::uint64_t>(msecsSinceMidnight) << 20);
    m_state = splitmix64(mix);
}

void ClockRandomSource::reseed() {
    reseedWith(static_cast<std::uint32_t>(QTime::currentTime().msecsSinceStartOfDay()));
}

double ClockRandomSource::next() {
    return static_cast<double>(splitmix64(m_state) >> 11) * 0x1.0p-53;
}

double FixedRandomSource::next() {
    ++draws;
    if (m_values.isEmpty())
        return 0.0;
    const double v = m_values.at(m_pos);
    m_pos = (m_pos + 1) % m_values.size();
    return v;
}

int RandomBetween(RandomSource& source, int max, int ex1, int ex2, int ex3, int ex4, int ex5,
                  int ex6) {
    const std::array<int, 6> excluded{ex1, ex2, ex3, ex4, ex5, ex6};
    auto isExcluded = [&](int n) {
        for (int e : excluded)
            if (e == n)
                return true;
        return false;
    };
    // Below 1 the clamping always yields max itself.
    if (max < 1)
        return isExcluded(max) ? 0 : max;
    // With six exclusions at most, this finds an admissible value within
    // seven steps or proves there is none.
    int smallest = 0;
    for (int n = 1; n <= max; ++n) {
        if (!isExcluded(n)) {
            smallest = n;
            break;
        }
    }
    if (smallest == 0)
        return 0;

    source.reseed();
    // A proper source hits an admissible value quickly; the cap only stops a
    // test source whose cycle never does.
    for (int tries = 0; tries < 1'000'000; ++tries) {
        const double r = source.next();
        long long n = static_cast<long long>((static_cast<double>(max) + 1.0) * r);
        if (n < 1)
            n = 1;
        if (n > max)
            n = max;
        if (!isExcluded(static_cast<int>(n)))
            return static_cast<int>(n);
    }
    return smallest;
}
