#include "plist/PropertyListReader.h"

#include "tests/support/PropertyListChecks.h"
#include "tests/support/Utc.h"

namespace quorvane::test {

class PropertyListReaderTest : public testing::Test {};

TEST_F(PropertyListReaderTest, EveryElement) {
    expectRead(inPlist("<string>text</string>"), QStringLiteral("text"));
    expectRead(inPlist("<integer>7</integer>"), qlonglong(7));
    expectRead(inPlist("<real>7</real>"), 7.0);
    expectRead(inPlist("<true/>"), true);
    expectRead(inPlist("<false/>"), false);
    expectRead(inPlist("<data>QUJD</data>"), QByteArray("ABC"));
    expectRead(inPlist("<date>2024-02-29T12:00:00Z</date>"), utc(QDate(2024, 2, 29), QTime(12, 0)));
    expectRead(inPlist("<array><true/><true/></array>"), QVariantList{true, true});
    expectRead(inPlist("<dict><key>a</key><true/></dict>"),
               QVariantMap{{QStringLiteral("a"), true}});
}

TEST_F(PropertyListReaderTest, EmptyElements) {
    expectRead(inPlist("<string/>"), QString());
    expectRead(inPlist("<string></string>"), QString());
    expectRead(inPlist("<data/>"), QByteArray(""));
    expectRead(inPlist("<array/>"), QVariantList{});
    expectRead(inPlist("<dict></dict>"), QVariantMap{});
    expectRead(inPlist("<true></true>"), true);
    expectRead(inPlist("<dict><key/><string/></dict>"), QVariantMap{{QString(), QString()}});
}

TEST_F(PropertyListReaderTest, DuplicateKey_LastValueCounts) {
    expectRead(inPlist("<dict><key>a</key><true/><key>a</key><string>b</string></dict>"),
               QVariantMap{{QStringLiteral("a"), QStringLiteral("b")}});
}

TEST_F(PropertyListReaderTest, WithoutPlistElement_IsRead) {
    expectRead("<?xml version='1.0'?><dict><key>a</key><true/></dict>",
               QVariantMap{{QStringLiteral("a"), true}});
    expectRead("<string>a</string>", QStringLiteral("a"));
}

TEST_F(PropertyListReaderTest, DocType_IsOptional) {
    expectRead("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist>\n" +
                   inPlist("<true/>"),
               true);
    expectRead("<!DOCTYPE plist SYSTEM \"file://localhost/nowhere.dtd\">" + inPlist("<true/>"),
               true);
}

TEST_F(PropertyListReaderTest, WhiteSpaceBetweenElements_IsSkipped) {
    expectRead("\n <plist\n>\r\n\t<dict > <key>a</key>\r\n \t<array>\n<true />\n</array></dict>\n"
               "</plist >\n\n",
               QVariantMap{{QStringLiteral("a"), QVariantList{true}}});
}

TEST_F(PropertyListReaderTest, WhiteSpaceInText_IsKept) {
    expectRead(inPlist("<string>  a \t b\n </string>"), QStringLiteral("  a \t b\n "));
    expectRead(inPlist("<string>   </string>"), QStringLiteral("   "));
    expectRead(inPlist("<dict><key> a </key><true/></dict>"),
               QVariantMap{{QStringLiteral(" a "), true}});
}

TEST_F(PropertyListReaderTest, LineEndsInText_BecomeLineFeeds) {
    expectRead(inPlist("<string>a\r\nb\rc&#13;&#10;d</string>"), QStringLiteral("a\nb\nc\r\nd"));
}

TEST_F(PropertyListReaderTest, CommentsAndProcessingInstructions_AreSkippedEverywhere) {
    expectRead("<!-- a --><?b c?><plist><!-- d --><dict><!-- e --><key>k<!-- f -->1</key><!-- g -->"
               "<?h?><string>x<!-- <i> -->y<?j k?>z</string><!-- l --></dict><!-- m --></plist>"
               "<!-- n --><?o?>",
               QVariantMap{{QStringLiteral("k1"), QStringLiteral("xyz")}});
    expectRead(inPlist("<integer>1<!-- and -->2</integer>"), qlonglong(12));
    expectRead(inPlist("<true><!-- really --></true>"), true);
}

TEST_F(PropertyListReaderTest, CData_IsText) {
    expectRead(inPlist("<string>a<![CDATA[<b> & &amp; ]] ]]>c</string>"),
               QStringLiteral("a<b> & &amp; ]] c"));
}

TEST_F(PropertyListReaderTest, References_AreResolved) {
    expectRead(inPlist("<string>&lt;&gt;&amp;&quot;&apos;&#65;&#x1F50B;</string>"),
               QStringLiteral("<>&\"'A🔋"));
    expectRead(inPlist("<integer>&#49;2</integer>"), qlonglong(12));
}

TEST_F(PropertyListReaderTest, Attributes_AreIgnored) {
    expectRead("<plist version='0.9' xmlns:x='y'><array x:id='1'><true b=''/></array></plist>",
               QVariantList{true});
}

TEST_F(PropertyListReaderTest, MalformedXml_IsRefusedWithItsPlace) {
    expectRefused("<plist>\n<string>a</strin></plist>", "line 2, column");
    expectRefused("plain text", "line 1, column");
    for (const char* content :
         {"<array>", "</array>", "<string>a<</string>", "<string>&</string>", "<string a></string>",
          "<string a='1' a='2'/>", "<string>]]></string>", "<string>&#0;</string>",
          "<string>&#xD800;</string>", "<!-- a -- b --><true/>", "< true/>", "<?xml?><true/>"}) {
        expectRefused(inPlist(content), "line 1, column");
    }
    expectRefused(" <?xml version='1.0'?>" + inPlist("<true/>"), "line 1, column");
    expectRefused("<?xml version='1.1'?>" + inPlist("<true/>"), "line 1, column");
}

TEST_F(PropertyListReaderTest, UnknownElement_IsRefusedByName) {
    expectRefused(inPlist("<null/>"), "\"null\"");
    expectRefused(inPlist("<array><String>a</String></array>"), "\"String\"");
    expectRefused(inPlist("<p:string xmlns:p='q'>a</p:string>"), "\"p:string\"");
    expectRefused(inPlist("<key>a</key>"), "\"key\"");
    expectRefused(inPlist(inPlist("<true/>")), "\"plist\"");
    expectRefused("<html/>", "\"html\"");
}

TEST_F(PropertyListReaderTest, TextWhereNoneBelongs_IsRefused) {
    for (const char* content :
         {"a<true/>", "<true/>a", "<array>a</array>", "<array><true/>a</array>", "<dict>a</dict>",
          "<dict><key>k</key>a<true/></dict>", "<true>a</true>", "<array><![CDATA[a]]></array>",
          "<array>&#65;</array>", "<array>&#160;</array>", "<array>\xC2\xA0</array>"}) {
        expectRefused(inPlist(content), "no text may stand here");
    }
    expectRefused(inPlist("<true/>") + "a", "line 1");
    expectRefused("a" + inPlist("<true/>"), "line 1");
}

TEST_F(PropertyListReaderTest, KeyWithoutValue_IsRefused) {
    expectRefused(inPlist("<dict><key>size</key></dict>"), "the key \"size\" has no value");
    expectRefused(inPlist("<dict><key>a</key><key>b</key><true/></dict>"), "\"a\" has no value");
}

TEST_F(PropertyListReaderTest, ValueWithoutKey_IsRefused) {
    expectRefused(inPlist("<dict><true/></dict>"), "a value without a key");
    expectRefused(inPlist("<dict><key>a</key><true/><false/></dict>"), "a value without a key");
}

TEST_F(PropertyListReaderTest, NoValueOrSeveral_AreRefused) {
    expectRefused(inPlist(""), "holds no value");
    expectRefused("<plist/>", "holds no value");
    expectRefused(inPlist("<true/><false/>"), "more than one value");
    expectRefused(inPlist("<true/>") + inPlist("<true/>"), "line 1");
    expectRefused("<true/><false/>", "line 1");
}

TEST_F(PropertyListReaderTest, ElementInsideText_IsRefused) {
    for (const char* content : {"<string>a<b/></string>", "<integer><integer>1</integer></integer>",
                                "<dict><key><string>a</string></key><true/></dict>"}) {
        expectRefused(inPlist(content), "only text may stand here");
    }
    expectRefused(inPlist("<true><true/></true>"), "an element inside <true>");
}

TEST_F(PropertyListReaderTest, BadScalar_IsRefusedWithItsText) {
    expectRefused(inPlist("<integer>twelve</integer>"), "\"twelve\" is not a valid integer");
    expectRefused(inPlist("<real>1,5</real>"), "\"1,5\" is not a valid real");
    expectRefused(inPlist("<date>today</date>"), "\"today\" is not a valid date");
    expectRefused(inPlist("<data>?</data>"), "\"?\" is not a valid data");
    expectRefused(inPlist("<integer/>"), "\"\" is not a valid integer");
}

TEST_F(PropertyListReaderTest, UndeclaredEntity_IsRefused) {
    expectRefused(inPlist("<string>&e;</string>"), "'e'");
    const QByteArray docType = "<!DOCTYPE plist SYSTEM 'file:///nowhere.dtd'>";
    expectRefused(docType + inPlist("<string>&e;</string>"), "unknown entity \"e\"");
    expectRefused(docType + inPlist("<array>&e;</array>"), "unknown entity \"e\"");
}

TEST_F(PropertyListReaderTest, DocTypeInTheWrongPlace_IsRefused) {
    expectRefused("<!DOCTYPE plist><!DOCTYPE plist>" + inPlist("<true/>"), "line 1");
    expectRefused(inPlist("<!DOCTYPE plist><true/>"), "line 1");
    expectRefused(inPlist("<string><!DOCTYPE plist></string>"), "line 1");
    expectRefused(inPlist("<true/>") + "<!DOCTYPE plist>", "line 1");
}

} // namespace quorvane::test
