// Records, external objects and lists of the reference host.
#include "refhost.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>

using namespace qdhost;

namespace {

const qd_host &H = *hostTable();

// An external type holding a positive integer, written with a leading '#'.
qd_type ticketType() {
    ExternalType t;
    t.fromText = [](const std::string &text, std::string &data) {
        if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos)
            return false;
        data = std::to_string(std::stoll(text)); // drops leading zeros
        return true;
    };
    t.toText = [](const std::string &data) { return "#" + data; };
    return registerExternalType("ticket", t);
}

qd_type opaqueType() {
    ExternalType t;
    t.textual = false;
    return registerExternalType("opaque", t);
}

qd_type pointType() {
    return registerRecordType("point", {{"x", QD_REAL}, {"y", QD_REAL}});
}

qd_type stopType() {
    return registerRecordType("stop", {{"name", QD_STRING},
                                       {"at", pointType()},
                                       {"ticket", ticketType()},
                                       {"open", QD_BOOL}});
}

TEST(HostTypes, RegistrationAndInfo) {
    qd_type p = pointType();
    EXPECT_GT(p, QD_BOOL);
    EXPECT_EQ(pointType(), p); // same definition, same number
    EXPECT_THROW(registerRecordType("point", {{"x", QD_INT}}), std::invalid_argument);
    EXPECT_THROW(registerRecordType("bad", {{"x", 4000}}), std::invalid_argument);
    EXPECT_THROW(registerRecordType("empty", {}), std::invalid_argument);

    struct Case {
        qd_type type;
        int props;
        int structure;
        bool hasDesc;
    };
    const Case cases[] = {
        {QD_INT, QD_PROP_TEXT, QD_VALUE, false},
        {QD_STRING, QD_PROP_TEXT, QD_VALUE, false},
        {ticketType(), QD_PROP_TEXT, QD_VALUE, false},
        {opaqueType(), 0, QD_VALUE, false},
        {p, 0, QD_RECORD, true},
        {p | 3u << 12, 0, QD_RECORD, true}, // a description entry as it stands
    };
    Context ctx;
    for (const Case &c : cases) {
        SCOPED_TRACE(c.type);
        int props = -1, st = -1;
        const int *desc = nullptr;
        ASSERT_EQ(H.typeInfo(&ctx, c.type, QD_INFO_PROPS, &props), 0);
        EXPECT_EQ(props, c.props);
        ASSERT_EQ(H.typeInfo(&ctx, c.type, QD_INFO_STRUCT, &st), 0);
        EXPECT_EQ(st, c.structure);
        EXPECT_EQ(H.typeInfo(&ctx, c.type, QD_INFO_DESC, &desc) == 0, c.hasDesc);
    }
    int out;
    EXPECT_NE(H.typeInfo(&ctx, 0, QD_INFO_PROPS, &out), 0);
    EXPECT_NE(H.typeInfo(&ctx, 4095, QD_INFO_PROPS, &out), 0);
}

TEST(HostTypes, NestedDescription) {
    qd_type stop = stopType();
    Context ctx;
    const int *d = nullptr;
    ASSERT_EQ(H.typeInfo(&ctx, stop, QD_INFO_DESC, &d), 0);
    // name, at, ticket, open, 0, then the description of "point".
    const unsigned want[] = {QD_STRING | 1u << 12, pointType() | 2u << 12 | 4u << 22,
                             ticketType() | 3u << 12, QD_BOOL | 4u << 12, 0,
                             QD_REAL | 1u << 12, QD_REAL | 2u << 12, 0};
    for (size_t i = 0; i < sizeof want / sizeof *want; ++i)
        EXPECT_EQ((unsigned)d[i], want[i]) << i;
    const int *nested = d + 1 + QD_FIELD_NESTED(d[1]);
    EXPECT_EQ(QD_FIELD_NUMBER(nested[1]), 2u);
    EXPECT_EQ(nested[2], 0);
}

TEST(HostRecord, FieldsThroughTheTable) {
    qd_type stop = stopType();
    Context ctx;
    void *r = H.newObject(&ctx, stop);
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(ctx.liveObjects(), 1);

    // Basic fields by value.
    qd_value v = qdBool(true);
    ASSERT_EQ(H.recordValue(&ctx, stop, r, 4, &v, QD_FIELD_SET), 0);
    // String field: a handle stored through the field reference.
    void *ref = nullptr;
    ASSERT_EQ(H.recordField(&ctx, stop, r, 1, &ref), 0);
    ASSERT_EQ(H.copyObject(&ctx, QD_STRING, ref, "Main St", QD_COPY_TEXT), 0);
    // Nested record and its fields.
    void *at = nullptr;
    ASSERT_EQ(H.recordField(&ctx, stop, r, 2, &at), 0);
    qd_value x = qdReal(1.5), y = qdReal(-2);
    ASSERT_EQ(H.recordValue(&ctx, pointType(), at, 1, &x, QD_FIELD_SET), 0);
    ASSERT_EQ(H.recordValue(&ctx, pointType(), at, 2, &y, QD_FIELD_SET), 0);
    // External field from text.
    void *t = nullptr;
    ASSERT_EQ(H.recordField(&ctx, stop, r, 3, &t), 0);
    ASSERT_EQ(H.copyObject(&ctx, ticketType(), t, "0042", QD_COPY_TEXT), 0);
    EXPECT_NE(H.copyObject(&ctx, ticketType(), t, "4x", QD_COPY_TEXT), 0);

    Record *rec = static_cast<Record *>(static_cast<Object *>(r));
    EXPECT_EQ(rec->text(), "{Main St,{1.5,-2},#42,true}");
    qd_value back{};
    ASSERT_EQ(H.recordValue(&ctx, stop, r, 4, &back, QD_FIELD_GET), 0);
    EXPECT_EQ(back.b, 1);

    // Refusals: wrong type word, field numbers out of range, a record
    // field through recordValue.
    EXPECT_NE(H.recordValue(&ctx, pointType(), r, 1, &v, QD_FIELD_GET), 0);
    EXPECT_NE(H.recordField(&ctx, stop, r, 0, &ref), 0);
    EXPECT_NE(H.recordField(&ctx, stop, r, 5, &ref), 0);
    EXPECT_NE(H.recordValue(&ctx, stop, r, 2, &v, QD_FIELD_GET), 0);

    // Copy into a second object, then delete both.
    void *copy = H.newObject(&ctx, stop);
    ASSERT_EQ(H.copyObject(&ctx, stop, copy, r, QD_COPY_OBJECT), 0);
    EXPECT_EQ(static_cast<Record *>(static_cast<Object *>(copy))->text(), rec->text());
    H.deleteObject(&ctx, stop, r);
    H.deleteObject(&ctx, stop, copy);
    EXPECT_EQ(ctx.liveObjects(), 0);
}

TEST(HostExternal, TextRoundTrip) {
    qd_type ticket = ticketType();
    struct Case {
        const char *text;
        bool ok;
        const char *back;
    };
    const Case cases[] = {{"7", true, "#7"}, {"000120", true, "#120"}, {"", false, ""},
                          {"-3", false, ""}, {"12a", false, ""}};
    Context ctx;
    for (const Case &c : cases) {
        SCOPED_TRACE(c.text);
        void *e = H.newObject(&ctx, ticket);
        ASSERT_NE(e, nullptr);
        EXPECT_EQ(H.copyObject(&ctx, ticket, e, c.text, QD_COPY_TEXT) == 0, c.ok);
        if (c.ok) {
            char buf[8];
            int n = H.toText(&ctx, ticket, e, buf, sizeof buf);
            EXPECT_EQ(n, (int)strlen(c.back));
            EXPECT_STREQ(buf, c.back);
            char tiny[3];
            EXPECT_EQ(H.toText(&ctx, ticket, e, tiny, sizeof tiny), n); // full length
            EXPECT_STREQ(tiny, std::string(c.back).substr(0, 2).c_str());
        }
        H.deleteObject(&ctx, ticket, e);
    }
    void *o = H.newObject(&ctx, opaqueType());
    char buf[8];
    EXPECT_LT(H.toText(&ctx, opaqueType(), o, buf, sizeof buf), 0);
    EXPECT_NE(H.copyObject(&ctx, opaqueType(), o, "1", QD_COPY_TEXT), 0);
    EXPECT_EQ(H.newObject(&ctx, QD_INT), nullptr);
    EXPECT_THROW(ctx.newExternal(ticket, "x"), std::invalid_argument);
    EXPECT_EQ(ctx.newExternal(ticket, "5")->text(), "#5");
}

TEST(HostArray, RecordAndExternalElements) {
    Context ctx;
    Set *s = ctx.newSet(QD_STRING, {qdStr("a"), qdStr("b")});
    Array *a = ctx.newArray(pointType(), {s});
    int at[1] = {1};
    qd_value got{};
    ASSERT_EQ(H.arrayGet(a, at, &got), 0); // the shared empty record
    ASSERT_NE(got.p, nullptr);
    EXPECT_EQ(H.arrayEntryCount(a), 0);
    qd_value made{};
    ASSERT_EQ(H.arraySet(&ctx, a, at, &made), 0);
    ASSERT_NE(made.p, nullptr);
    qd_value x = qdReal(3);
    ASSERT_EQ(H.recordValue(&ctx, pointType(), made.p, 1, &x, QD_FIELD_SET), 0);
    EXPECT_EQ((a->entries()), (std::map<std::vector<std::string>, std::string>{{{"b"}, "{3,0}"}}));

    Array *t = ctx.newArray(ticketType(), {s});
    External *e = ctx.newExternal(ticketType(), "9");
    ASSERT_EQ(H.arraySetObject(&ctx, t, at, e), 0);
    e->data = "10"; // the array holds a copy
    EXPECT_EQ((t->entries()), (std::map<std::vector<std::string>, std::string>{{{"b"}, "#9"}}));
    EXPECT_NE(H.arraySetObject(&ctx, t, at, ctx.newRecord(pointType())), 0);
}

TEST(HostList, AppendAndWalk) {
    Context ctx;
    List *typed = ctx.newList(QD_INT);
    List *mixed = ctx.newList();
    Record *p = ctx.newRecord(pointType());
    p->set("x", qdReal(4));
    Array *arr = ctx.newArray(QD_INT, {ctx.newSet(QD_INT, {qdInt(1)})});
    struct Case {
        List *list;
        qd_type type;
        qd_value value;
        bool ok;
    };
    const Case cases[] = {
        {typed, 0, qdInt(5), true},
        {typed, QD_INT, qdInt(-1), true},
        {mixed, QD_STRING, qdStr("s"), true},
        {mixed, 0, qdInt(1), false}, // untyped list needs a type
        {mixed, pointType(), qdPtr(p), true},
        {mixed, QD_INT | QD_ARRAY, qdPtr(arr), true},
        {mixed, QD_BOOL, qdBool(true), true},
    };
    for (const Case &c : cases)
        EXPECT_EQ(H.listAppend(&ctx, c.list, c.type, &c.value) == 0, c.ok);
    p->set("x", qdReal(5)); // the list keeps a copy

    EXPECT_EQ(H.listSize(typed), 2);
    EXPECT_EQ(H.listElementType(typed), QD_INT);
    EXPECT_EQ(H.listElementType(mixed), 0u);
    EXPECT_EQ(typed->texts(), (std::vector<std::string>{"5", "-1"}));
    EXPECT_EQ(mixed->texts(), (std::vector<std::string>{"s", "{4,0}", "?", "true"}));

    std::vector<qd_type> types;
    qd_type ty;
    qd_value v;
    for (void *pos = H.listNext(mixed, nullptr, &ty, &v); pos; pos = H.listNext(mixed, pos, &ty, &v))
        types.push_back(ty);
    EXPECT_EQ(types, (std::vector<qd_type>{QD_STRING, pointType(), QD_INT | QD_ARRAY, QD_BOOL}));
    EXPECT_EQ(H.listNext(ctx.newList(QD_INT), nullptr, &ty, &v), nullptr);
}

TEST(HostObjects, WrongHandlesAreRefused) {
    Context ctx;
    List *l = ctx.newList(QD_INT);
    int at[1] = {0};
    qd_value v{};
    EXPECT_EQ(H.setSize(l), 0);
    EXPECT_NE(H.arrayGet(l, at, &v), 0);
    EXPECT_NE(H.arrayFirstCell(nullptr, at), 0);
    EXPECT_EQ(H.listNext(ctx.newSet(QD_INT), nullptr, nullptr, &v), nullptr);
    EXPECT_NE(H.recordField(&ctx, pointType(), l, 1, &v.p), 0);
}

} // namespace
