#include "result/JsonTree.h"

#include <charconv>
#include <cstring>

// The parser walks the bytes once, appending a node for every value in the
// order they appear; a container's node learns its count and where its
// members end when it is closed.
struct JsonParser {
    const char* base;
    const char* p;
    const char* end;
    std::vector<JsonTree::Node>& nodes;
    int depth = 0;

    // The hot loops work on a local copy of p, which the compiler can keep
    // in a register.
    void blanks() {
        const char* q = p;
        while (q < end && (*q == ' ' || *q == '\t' || *q == '\n' || *q == '\r'))
            ++q;
        p = q;
    }
    bool literal(const char* word) {
        const std::size_t n = std::strlen(word);
        if (std::size_t(end - p) < n || std::memcmp(p, word, n) != 0)
            return false;
        p += n;
        return true;
    }
    static bool continuation(unsigned char c) { return (c & 0xC0) == 0x80; }
    static int hex(char c) {
        if (c >= '0' && c <= '9')
            return c - '0';
        if (c >= 'a' && c <= 'f')
            return c - 'a' + 10;
        if (c >= 'A' && c <= 'F')
            return c - 'A' + 10;
        return -1;
    }

    // One UTF-8 character at p (its first byte 0x80 or above): no overlong
    // forms, no surrogates, nothing past U+10FFFF.
    bool utf8() {
        const auto c = static_cast<unsigned char>(*p);
        int more = 0;
        unsigned char low = 0x80, high = 0xBF;
        if (c >= 0xC2 && c <= 0xDF) {
            more = 1;
        } else if (c >= 0xE0 && c <= 0xEF) {
            more = 2;
            if (c == 0xE0)
                low = 0xA0;
            if (c == 0xED)
                high = 0x9F;
        } else if (c >= 0xF0 && c <= 0xF4) {
            more = 3;
            if (c == 0xF0)
                low = 0x90;
            if (c == 0xF4)
                high = 0x8F;
        } else {
            return false;
        }
        if (end - p <= more)
            return false;
        const auto second = static_cast<unsigned char>(p[1]);
        if (second < low || second > high)
            return false;
        for (int i = 2; i <= more; ++i)
            if (!continuation(static_cast<unsigned char>(p[i])))
                return false;
        p += more + 1;
        return true;
    }

    bool string(JsonTree::Node& node) {
        ++p; // the opening quote
        node.type = JsonTree::Type::String;
        node.begin = int(p - base);
        for (;;) {
            // Plain ASCII runs, the bulk of every text, in a tight loop.
            const char* q = p;
            while (q < end && *q != '"' && *q != '\\' && static_cast<unsigned char>(*q) < 0x80)
                ++q;
            p = q;
            if (p >= end)
                return false; // cut off inside a text
            const auto c = static_cast<unsigned char>(*p);
            if (c == '"') {
                node.end = int(p - base);
                ++p;
                return true;
            }
            if (c == '\\') {
                node.flag = true;
                if (end - p < 2)
                    return false;
                switch (p[1]) {
                case '"':
                case '\\':
                case '/':
                case 'b':
                case 'f':
                case 'n':
                case 'r':
                case 't':
                    p += 2;
                    break;
                case 'u':
                    if (end - p < 6)
                        return false;
                    for (int i = 2; i < 6; ++i)
                        if (hex(p[i]) < 0)
                            return false;
                    p += 6;
                    break;
                default:
                    return false;
                }
            } else if (!utf8()) {
                return false;
            }
        }
    }

    bool number(JsonTree::Node& node) {
        const char* start = p;
        auto digits = [this] {
            const char* from = p;
            while (p < end && *p >= '0' && *p <= '9')
                ++p;
            return p > from;
        };
        if (p < end && *p == '-')
            ++p;
        if (p < end && *p == '0')
            ++p;
        else if (!digits())
            return false;
        if (p < end && *p == '.') {
            ++p;
            if (!digits())
                return false;
        }
        if (p < end && (*p == 'e' || *p == 'E')) {
            ++p;
            if (p < end && (*p == '+' || *p == '-'))
                ++p;
            if (!digits())
                return false;
        }
        node.type = JsonTree::Type::Number;
        node.begin = int(start - base);
        node.end = int(p - base);
        const auto [at, error] = std::from_chars(start, p, node.number);
        return error == std::errc() && at == p;
    }

    bool value() {
        blanks();
        if (p >= end)
            return false;
        const int index = int(nodes.size());
        nodes.emplace_back();
        bool ok = false;
        switch (*p) {
        case '{':
        case '[':
            ok = container(index, *p == '{');
            break;
        case '"':
            ok = string(nodes[index]);
            break;
        case 't':
            ok = literal("true");
            nodes[index].type = JsonTree::Type::Bool;
            nodes[index].flag = true;
            break;
        case 'f':
            ok = literal("false");
            nodes[index].type = JsonTree::Type::Bool;
            break;
        case 'n':
            ok = literal("null");
            break;
        default:
            ok = number(nodes[index]);
        }
        nodes[index].after = int(nodes.size());
        return ok;
    }

    bool container(int index, bool object) {
        if (++depth > JsonTree::kMaxDepth)
            return false;
        ++p;
        int count = 0;
        const char close = object ? '}' : ']';
        blanks();
        if (p < end && *p == close) {
            ++p;
        } else {
            for (;;) {
                if (object) {
                    blanks();
                    if (p >= end || *p != '"')
                        return false;
                    const int key = int(nodes.size());
                    nodes.emplace_back();
                    if (!string(nodes[key]))
                        return false;
                    nodes[key].after = key + 1;
                    blanks();
                    if (p >= end || *p != ':')
                        return false;
                    ++p;
                }
                if (!value())
                    return false;
                ++count;
                blanks();
                if (p < end && *p == ',') {
                    ++p;
                    continue;
                }
                if (p < end && *p == close) {
                    ++p;
                    break;
                }
                return false;
            }
        }
        --depth;
        nodes[index].type = object ? JsonTree::Type::Object : JsonTree::Type::Array;
        nodes[index].count = count;
        return true;
    }
};

std::optional<JsonTree> JsonTree::parse(const QByteArray& bytes) {
    JsonTree tree;
    tree.m_bytes = bytes;
    const char* base = tree.m_bytes.constData();
    // About one node for every twenty bytes of an indented result file.
    tree.m_nodes.reserve(std::size_t(bytes.size() / 20 + 4));
    JsonParser parser{base, base, base + bytes.size(), tree.m_nodes};
    if (bytes.startsWith("\xEF\xBB\xBF"))
        parser.p += 3;
    if (!parser.value())
        return std::nullopt;
    parser.blanks();
    if (parser.p != parser.end)
        return std::nullopt; // something after the value
    return tree;
}

QString JsonTree::text(const Node& node) const {
    const char* from = m_bytes.constData() + node.begin;
    const char* to = m_bytes.constData() + node.end;
    if (!node.flag)
        return QString::fromUtf8(from, to - from);
    QString out;
    out.reserve(to - from);
    while (from < to) {
        const char* slash = static_cast<const char*>(std::memchr(from, '\\', size_t(to - from)));
        if (!slash) {
            out += QString::fromUtf8(from, to - from);
            break;
        }
        out += QString::fromUtf8(from, slash - from);
        switch (slash[1]) {
        case 'b':
            out += u'\b';
            break;
        case 'f':
            out += u'\f';
            break;
        case 'n':
            out += u'\n';
            break;
        case 'r':
            out += u'\r';
            break;
        case 't':
            out += u'\t';
            break;
        case 'u': {
            char16_t unit = 0;
            for (int i = 2; i < 6; ++i)
                unit = char16_t(unit * 16 + JsonParser::hex(slash[i]));
            out += QChar(unit);
            from = slash + 6;
            continue;
        }
        default: // '"', '\\', '/'
            out += QLatin1Char(slash[1]);
        }
        from = slash + 2;
    }
    return out;
}

bool JsonTree::Value::is(Type type) const {
    return m_tree && m_tree->m_nodes[std::size_t(m_index)].type == type;
}

QString JsonTree::Value::toString() const {
    return isString() ? m_tree->text(m_tree->m_nodes[std::size_t(m_index)]) : QString();
}

double JsonTree::Value::toNumber() const {
    return isNumber() ? m_tree->m_nodes[std::size_t(m_index)].number : 0.0;
}

bool JsonTree::Value::toBool() const {
    return isBool() && m_tree->m_nodes[std::size_t(m_index)].flag;
}

JsonTree::Value JsonTree::Value::member(QLatin1String key) const {
    if (!isObject())
        return {};
    const std::vector<Node>& nodes = m_tree->m_nodes;
    const Node& object = nodes[std::size_t(m_index)];
    Value found;
    int at = m_index + 1;
    for (int i = 0; i < object.count; ++i) {
        const Node& name = nodes[std::size_t(at)];
        const bool same = name.flag ? m_tree->text(name) == key
                                    : name.end - name.begin == key.size() &&
                                          std::memcmp(m_tree->m_bytes.constData() + name.begin,
                                                      key.data(), std::size_t(key.size())) == 0;
        if (same)
            found = Value(m_tree, at + 1); // the last of a repeated key counts
        at = nodes[std::size_t(at + 1)].after;
    }
    return found;
}

QList<JsonTree::Value> JsonTree::Value::elements() const {
    QList<Value> out;
    if (!isArray())
        return out;
    const std::vector<Node>& nodes = m_tree->m_nodes;
    const Node& array = nodes[std::size_t(m_index)];
    out.reserve(array.count);
    int at = m_index + 1;
    for (int i = 0; i < array.count; ++i) {
        out.append(Value(m_tree, at));
        at = nodes[std::size_t(at)].after;
    }
    return out;
}
