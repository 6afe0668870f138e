#pragma once

#include <QByteArray>
#include <QLatin1String>
#include <QList>
#include <QString>
#include <optional>
#include <vector>

// A JSON text checked once and kept as a flat list of nodes that point into
// its bytes. Reading a result file this way takes a fraction of the time a
// QJsonDocument takes (no tree of objects is built, and a text is decoded
// only when it is asked for), which is what lets the teacher's overview read
// a whole school year of results at once.
//
// The grammar is JSON's, strictly for numbers, escapes and UTF-8 (a number
// like "1." or an escape like "\x" is refused, where QJsonDocument lets them
// pass); like QJsonDocument it allows a leading byte-order mark and control
// characters inside texts, and of a key given twice the last one counts.
class JsonTree final {
public:
    enum class Type : quint8 { Null, Bool, Number, String, Array, Object };
    // Result files nest four deep; anything far deeper is not one.
    static constexpr int kMaxDepth = 64;

    class Value {
    public:
        Value() = default;
        bool isValid() const { return m_tree != nullptr; }
        bool is(Type type) const;
        bool isString() const { return is(Type::String); }
        bool isNumber() const { return is(Type::Number); }
        bool isBool() const { return is(Type::Bool); }
        bool isArray() const { return is(Type::Array); }
        bool isObject() const { return is(Type::Object); }
        QString toString() const; // empty for anything but a text
        double toNumber() const;  // 0 for anything but a number
        bool toBool() const;      // false for anything but true
        // An object's member under this key; invalid when there is none.
        Value member(QLatin1String key) const;
        // An array's elements in order; empty for anything else.
        QList<Value> elements() const;

    private:
        friend class JsonTree;
        Value(const JsonTree* tree, int index) : m_tree(tree), m_index(index) {}
        const JsonTree* m_tree = nullptr;
        int m_index = -1;
    };

    // nullopt when the bytes are not exactly one JSON value (blanks around
    // it allowed).
    static std::optional<JsonTree> parse(const QByteArray& bytes);
    Value root() const { return Value(this, 0); }

private:
    friend struct JsonParser;
    struct Node {
        Type type = Type::Null;
        bool flag = false; // a Bool's value; for a String: it holds escapes
        int begin = 0;     // a String's text (without quotes) or a Number's digits
        int end = 0;
        int after = 0; // the index of the first node after this one's members
        int count = 0; // elements of an Array, members of an Object
        double number = 0;
    };
    QString text(const Node& node) const;

    QByteArray m_bytes;
    std::vector<Node> m_nodes;
};
