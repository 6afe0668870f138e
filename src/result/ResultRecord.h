#pragma once

#include "session/TestRecord.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <optional>

// One finished test as a result file holds it: the one description of that
// file's JSON, used by the program that writes it, by the teacher's overview
// that reads it and by the tests.
//
//   { "format": "laborix-result", "version": 1, "program": "Laborix Test 3.0",
//     "machine": "pc-07", "candidate": "Lena Köhler", "level": "normal",
//     "started": "2026-11-24T10:15:02", "finished": "2026-11-24T10:41:37",
//     "tasks": 52, "correct": 44, "grade": "gut plus", "points": 12,
//     "bank": { "file": "labquiz.dat", "sha256": "…" },
//     "pages": [ { "page": 1, "title": "…", "tasks": 6, "correct": 5,
//                  "items": [ { "prompt": "Arsen", "expected": "As",
//                               "given": "As", "right": true }, … ] }, … ] }
//
// Items carry "hint" only where a wrong answer has one.
struct FinalResult;
struct SessionState;

struct ResultRecord {
    static constexpr const char* kFormat = "laborix-result";
    static constexpr int kVersion = 1;
    // A result of ten pages is a few kilobytes; a larger file is not one.
    static constexpr qint64 kMaxFileBytes = 1024 * 1024;

    QString program;
    QString machine;
    QString candidate;
    bool expert = false;
    QDateTime started; // local time, to the second
    QDateTime finished;
    int tasks = 0;
    int correct = 0;
    QString grade;  // "ungenügend" … "sehr gut plus"
    int points = 0; // 0 … 15
    QString bankFile;
    QString bankSha256;
    QList<PageRecord> pages;

    // The test as the session holds it at its end; machine and bank are the
    // caller's to fill in.
    static ResultRecord fromTest(const SessionState& state, const FinalResult& result);

    QByteArray toJson() const;

    // Reads a result file's bytes. Refuses (nullopt, *why says why in German)
    // what is not JSON, another format or version, misses a field, or whose
    // pages do not add up to its totals.
    static std::optional<ResultRecord> fromJson(const QByteArray& bytes, QString* why = nullptr);

    double share() const { return tasks > 0 ? double(correct) / tasks : 0.0; }
};
