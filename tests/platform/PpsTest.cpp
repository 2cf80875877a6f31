// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>
#include <pps.h>

#include <cmath>
#include <limits>
#include <string>

namespace
{

/// An encoder that is cleaned up.
struct Encoder
{
    Encoder() { EXPECT_EQ(pps_encoder_initialize(&encoder, true), PPS_OK); }
    ~Encoder() { pps_encoder_cleanup(&encoder); }
    pps_encoder_t encoder = {};
};

/// A decoder of a text, and the text.
struct Decoder
{
    explicit Decoder(std::string json)
        : text(std::move(json))
    {
        EXPECT_EQ(pps_decoder_initialize(&decoder, nullptr), PPS_OK);
        status = pps_decoder_parse_json_str(&decoder, text.data());
    }
    ~Decoder() { pps_decoder_cleanup(&decoder); }

    std::string string(const char *name)
    {
        const char *value = nullptr;
        return pps_decoder_get_string(&decoder, name, &value) == PPS_OK ? value : "(none)";
    }

    std::string text;
    pps_decoder_t decoder = {};
    pps_status_t status = PPS_OK;
};

} // namespace

TEST(PpsEncoder, MembersComeInTheOrderTheyWereWritten)
{
    Encoder e;
    pps_encoder_start_object(&e.encoder, nullptr);
    pps_encoder_add_string(&e.encoder, "z", "Z\xC3\xBCrich \"\n\xE9");
    pps_encoder_add_int64(&e.encoder, "a", std::numeric_limits<std::int64_t>::min());
    pps_encoder_add_double(&e.encoder, "d", 46.5);
    pps_encoder_start_array(&e.encoder, "list");
    pps_encoder_add_bool(&e.encoder, nullptr, true);
    pps_encoder_add_null(&e.encoder, nullptr);
    pps_encoder_add_int(&e.encoder, nullptr, -1);
    EXPECT_EQ(pps_encoder_buffer(&e.encoder), nullptr) << "something is still open";
    pps_encoder_end_array(&e.encoder);
    pps_encoder_end_object(&e.encoder);
    const std::string expected =
        "{\"z\":\"Z\xC3\xBCrich \\\"\\n\xE9\",\"a\":-9223372036854775808,\"d\":46.5,\"list\":[true,null,-1]}";
    EXPECT_EQ(pps_encoder_buffer(&e.encoder), expected);
    EXPECT_EQ(pps_encoder_length(&e.encoder), static_cast<int>(expected.size()));
}

TEST(PpsEncoder, CallsThatDoNotFitAreRefusedAndWriteNothing)
{
    Encoder e;
    EXPECT_EQ(pps_encoder_end_object(&e.encoder), PPS_ERROR_STATE);
    pps_encoder_start_object(&e.encoder, "");
    EXPECT_EQ(pps_encoder_add_int(&e.encoder, nullptr, 1), PPS_ERROR_STATE);
    EXPECT_EQ(pps_encoder_end_array(&e.encoder), PPS_ERROR_STATE);
    EXPECT_EQ(pps_encoder_add_string(&e.encoder, "s", nullptr), PPS_ERROR_TYPE);
    EXPECT_EQ(pps_encoder_add_double(&e.encoder, "d", std::nan("")), PPS_ERROR_TYPE);
    pps_encoder_end_object(&e.encoder);
    EXPECT_EQ(pps_encoder_start_object(&e.encoder, nullptr), PPS_ERROR_STATE) << "the document is whole";
    EXPECT_STREQ(pps_encoder_buffer(&e.encoder), "{}");
}

TEST(PpsDecoder, MembersAreFoundByNameAndElementsInTurn)
{
    Decoder d(R"({"name":"Z\u00fcrich","list":["a",{"in":"b"},"c",null],"n":-7,"big":5000000000,"x":0.5,"yes":true})");
    ASSERT_EQ(d.status, PPS_OK);
    EXPECT_EQ(pps_decoder_type(&d.decoder, nullptr), PPS_TYPE_OBJECT);
    EXPECT_EQ(pps_decoder_pop(&d.decoder), PPS_ERROR_STATE) << "before the top-level value";
    EXPECT_EQ(pps_decoder_goto_index(&d.decoder, 0), PPS_ERROR_STATE);
    EXPECT_EQ(pps_decoder_name(&d.decoder), nullptr);
    EXPECT_EQ(pps_decoder_length(&d.decoder), 0);
    ASSERT_EQ(pps_decoder_push(&d.decoder, nullptr), PPS_OK);
    EXPECT_EQ(pps_decoder_length(&d.decoder), 6);
    const std::pair<const char *, pps_node_type_t> members[] = {{"name", PPS_TYPE_STRING},
                                                                {"list", PPS_TYPE_ARRAY},
                                                                {"n", PPS_TYPE_NUMBER},
                                                                {"yes", PPS_TYPE_BOOL},
                                                                {"none", PPS_TYPE_NONE}};
    for (const auto &[name, type] : members)
        EXPECT_EQ(pps_decoder_type(&d.decoder, name), type) << name;
    EXPECT_STREQ(pps_decoder_name(&d.decoder), "name");
    EXPECT_EQ(d.string(nullptr), "Z\xC3\xBCrich");
    EXPECT_STREQ(pps_decoder_name(&d.decoder), "list") << "members come in turn, too";

    ASSERT_EQ(pps_decoder_push(&d.decoder, "list"), PPS_OK);
    EXPECT_EQ(pps_decoder_name(&d.decoder), nullptr);
    EXPECT_EQ(pps_decoder_length(&d.decoder), 4);
    EXPECT_EQ(d.string(nullptr), "a");
    EXPECT_EQ(pps_decoder_push(&d.decoder, nullptr), PPS_OK);
    EXPECT_EQ(d.string("in"), "b");
    pps_decoder_pop(&d.decoder);
    EXPECT_EQ(d.string(nullptr), "c");
    EXPECT_EQ(pps_decoder_type(&d.decoder, nullptr), PPS_TYPE_NULL);
    EXPECT_EQ(pps_decoder_goto_index(&d.decoder, 3), PPS_OK);
    EXPECT_EQ(d.string(nullptr), "(none)") << "and stays there";
    for (const int outside : {-1, 4})
        EXPECT_EQ(pps_decoder_goto_index(&d.decoder, outside), PPS_ERROR_NOT_FOUND);
    EXPECT_EQ(pps_decoder_type(&d.decoder, nullptr), PPS_TYPE_NULL);
    EXPECT_EQ(pps_decoder_goto_index(&d.decoder, 0), PPS_OK);
    EXPECT_EQ(d.string(nullptr), "a");
    pps_decoder_pop(&d.decoder);
    EXPECT_STREQ(pps_decoder_name(&d.decoder), "list") << "entered by its name";

    int number = 0;
    std::int64_t big = 0;
    double real = 0;
    bool yes = false;
    EXPECT_EQ(pps_decoder_get_int(&d.decoder, "n", &number), PPS_OK);
    EXPECT_EQ(pps_decoder_get_int64(&d.decoder, "big", &big), PPS_OK);
    EXPECT_EQ(pps_decoder_get_double(&d.decoder, "x", &real), PPS_OK);
    EXPECT_EQ(pps_decoder_get_bool(&d.decoder, "yes", &yes), PPS_OK);
    const pps_status_t refused[] = {
        pps_decoder_get_int(&d.decoder, "big", &number),  pps_decoder_get_int(&d.decoder, "x", &number),
        pps_decoder_get_int64(&d.decoder, "x", &big),     pps_decoder_get_bool(&d.decoder, "n", &yes),
        pps_decoder_get_double(&d.decoder, "yes", &real), pps_decoder_push(&d.decoder, "n"),
    };
    EXPECT_THAT(refused, testing::Each(PPS_ERROR_TYPE));
    EXPECT_EQ(pps_decoder_get_int(&d.decoder, "none", &number), PPS_ERROR_NOT_FOUND);
    EXPECT_EQ(number, -7);
    EXPECT_EQ(big, 5000000000);
    EXPECT_EQ(real, 0.5);
    EXPECT_TRUE(yes);
    EXPECT_EQ(d.string("n"), "(none)");
    const std::pair<const char *, int> numbers[] = {
        {"[2147483647]", 2147483647}, {"[-2147483648]", -2147483647 - 1}, {"[2147483648]", 0}, {"[-2147483649]", 0}};
    for (const auto &[json, expected] : numbers) {
        Decoder edge(json);
        int value = 0;
        pps_decoder_push(&edge.decoder, nullptr);
        EXPECT_EQ(pps_decoder_get_int(&edge.decoder, nullptr, &value), expected == 0 ? PPS_ERROR_TYPE : PPS_OK) << json;
        EXPECT_EQ(value, expected);
    }
}

TEST(PpsDecoder, ReadsTheNumberThatWasWrittenToItsLastBit)
{
    for (const double number : {178.98653096289559, 61.108574560936972, -97.35220071018621, 5e-324}) {
        Encoder e;
        pps_encoder_start_array(&e.encoder, "");
        pps_encoder_add_double(&e.encoder, nullptr, number);
        pps_encoder_end_array(&e.encoder);
        Decoder d(pps_encoder_buffer(&e.encoder));
        double read = 0;
        pps_decoder_push(&d.decoder, nullptr);
        EXPECT_EQ(pps_decoder_get_double(&d.decoder, nullptr, &read), PPS_OK);
        EXPECT_EQ(read, number);
    }
    const struct
    {
        const char *json;
        double expected;
    } cases[] = {
        {"[0e300]", 0},     {"[-0.0E5]", 0}, {"[1e-400]", 0},
        {"[1.5,2]", 1.5},   {"[3 ]", 3},     {"[18446744073709551616]", 18446744073709551616.0},
        {"[100000e-5]", 1},
    };
    for (const auto &row : cases) {
        Decoder d(row.json);
        double read = -1;
        pps_decoder_push(&d.decoder, nullptr);
        EXPECT_EQ(pps_decoder_get_double(&d.decoder, nullptr, &read), PPS_OK) << row.json;
        EXPECT_EQ(read, row.expected) << row.json;
    }
}

TEST(PpsDecoder, WhatIsNoJsonIsRefused)
{
    for (const char *json : {"", "{", "{\"a\":}", "[1,]", "nonsense", "{} {}", "\"\\ud800", "[1e999]", "[0x10]",
                             "[1.8e308]", "[01]", "[1.]"}) {
        Decoder d(json);
        EXPECT_EQ(d.status, PPS_ERROR_SYNTAX) << json;
        EXPECT_EQ(d.string("a"), "(none)");
    }
    EXPECT_EQ(Decoder(std::string(256, '[') + std::string(256, ']')).status, PPS_OK);
    EXPECT_EQ(Decoder(std::string(257, '[') + std::string(257, ']')).status, PPS_ERROR_SYNTAX);
    EXPECT_EQ(Decoder(std::string(1000000, '[')).status, PPS_ERROR_SYNTAX);
    EXPECT_EQ(Decoder("[\"" + std::string(1000, '[') + "\\\"\"]").status, PPS_OK) << "brackets in a text do not nest";
}
