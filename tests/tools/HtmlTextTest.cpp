// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "formats/HtmlText.h"

#include <gtest/gtest.h>

TEST(HtmlTextTest, HtmlBecomesTextAndPlainTextIsUnchanged)
{
    const struct
    {
        const char *given;
        const char *text;
    } cases[] = {
        {"plain & simple: a < b, x<y>z, <me@a.example>, &c; &#0; &#xD800; &#1114112;  \n\n\n end ",
         "plain & simple: a < b, x<y>z, <me@a.example>, &c; &#0; &#xD800; &#1114112;  \n\n\n end "},
        {"<b>Caf\xC3\xA9</b> &amp; b&auml;r &#8364;&#x1F3F0;", "Caf\xC3\xA9 & b\xC3\xA4r \xE2\x82\xAC\xF0\x9F\x8F\xB0"},
        {"<p class=\"x\">One&nbsp;</p>\n<p>two<br/>three<BR>four</p>", "One\n\ntwo\nthree\nfour"},
        {"<ul><li>a</li><li>b</li></ul><!-- <b>c -->d<script>x()</script><style>y</style>", "a\n\nb\n\nd"},
        {"a &lt;b&gt; &amp;amp; <i>x</i>", "a <b> &amp; x"},
        {"<b>cut <i", "cut <i"},
        {"<!-- <br> open", "<!--\nopen"},
    };
    for (const auto &row : cases)
        EXPECT_EQ(formats::htmlToText(QString::fromUtf8(row.given)), QString::fromUtf8(row.text)) << row.given;
}

TEST(HtmlTextTest, TimeIsLinear)
{
    constexpr int COUNT = 100000;
    for (const char *part : {"<!--", "<script>", "<b ", "&", "<br>", "&nbsp;"})
        EXPECT_LE(formats::htmlToText(QString::fromLatin1(part).repeated(COUNT)).size(), COUNT * 4) << part;
}
