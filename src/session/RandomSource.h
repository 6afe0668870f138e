#pragma once

#include <QList>
#include <cstdint>

// Where RandomBetween gets its numbers. The program uses ClockRandomSource;
// tests pass a FixedRandomSource to get a known sequence.
class RandomSource {
public:
    virtual ~RandomSource() = default;
    // Called at the start of every draw.
    virtual void reseed() = 0;
    // Uniform in [0, 1).
    virtual double next() = 0;
};

// Reseeds from the time of day on every draw. The time is mixed into the
// current state rather than replacing it, so that two draws within the same
// millisecond still differ (the classic Randomize behaved the same way).
class ClockRandomSource final : public RandomSource {
public:
    ClockRandomSource();
    void reseed() override;
    double next() override;
    void reseedWith(std::uint32_t msecsSinceMidnight);

private:
    std::uint64_t m_state;
};

// Replays the given values in a cycle; reseeding does not restart it.
class FixedRandomSource final : public RandomSource {
public:
    explicit FixedRandomSource(QList<double> values) : m_values(std::move(values)) {}
    void reseed() override { ++reseeds; }
    double next() override;
    int reseeds = 0;
    int draws = 0;

private:
    QList<double> m_values;
    qsizetype m_pos = 0;
};

// A whole number from 1 to max that differs from every exclusion; callers
// pass 0 for exclusions they do not need. 1 comes up twice as often as any
// other value (both 0 and 1 of the scaled draw give 1), on purpose.
// Where no admissible number exists (max below 1 with 0 excluded, or all of
// 1..max excluded) it returns 0 at once instead of drawing forever.
int RandomBetween(RandomSource& source, int max, int ex1 = 0, int ex2 = 0, int ex3 = 0, int ex4 = 0,
                  int ex5 = 0, int ex6 = 0);
