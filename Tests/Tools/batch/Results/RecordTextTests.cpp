#include "Source/Tools/batch/Results/RecordText.h"

#include <gtest/gtest.h>

namespace qrv::batch {
namespace {

Record failedRecord() {
    Record record;
    record.archive = "in/a\nb.webarchive";
    record.sha256 = "ab12";
    record.mode = "screen";
    record.wishes = "xmp,text";
    record.error = {"NSCocoaErrorDomain", 259, "The file “a” couldn’t be opened."};
    record.pdf = "a.pdf";
    record.milliseconds = 47;
    record.attempts = 3;
    record.finished = "2026-11-23T10:05:00Z";
    return record;
}

Record convertedRecord() {
    Record record = failedRecord();
    record.error.reset();
    record.pdfSha256 = "cd34";
    record.pdfSize = 1'234'567'890'123;
    record.text = "a.txt";
    record.pages = 12;
    record.missingCount = 21;
    record.missing = {{"image", "http://x.example/a.png"}, {"style sheet", "http://x.example/\u202e.css"}};
    return record;
}

TEST(RecordText, IsALineThatIsReadAgain) {
    for (const Record& record : {failedRecord(), convertedRecord()}) {
        const std::string line = lineOf(record);
        EXPECT_EQ(line.find('\n'), line.size() - 1);
        EXPECT_EQ(recordOfLine(line), record);
    }
}

TEST(RecordText, NamesItsFields) {
    EXPECT_EQ(lineOf(failedRecord()),
              R"({"archive":"in/a\nb.webarchive","sha256":"ab12","mode":"screen","wishes":"xmp,text",)"
              R"("outcome":"failed","error_domain":"NSCocoaErrorDomain","error_code":259,)"
              R"("error":"The file \u201ca\u201d couldn\u2019t be opened.","pdf":"a.pdf","pdf_sha256":"",)"
              R"("pdf_size":0,"pages":null,"milliseconds":47,"attempts":3,"missing_count":0,"missing":[],)"
              R"("finished":"2026-11-23T10:05:00Z"})"
              "\n");
    EXPECT_NE(lineOf(convertedRecord()).find(R"("outcome":"converted","pdf":"a.pdf")"), std::string::npos);
}

TEST(RecordText, KeepsNamesThatAreNoUTF8) {
    Record record = convertedRecord();
    record.archive = "in/\xff\xfe.webarchive";
    record.pdf = "\xe4.pdf";
    record.text = "\xe4.txt";
    const std::string line = lineOf(record);
    EXPECT_NE(line.find(R"("archive":"in/\ufffd\ufffd.webarchive","archive_bytes":"aW4v)"),
              std::string::npos);
    EXPECT_EQ(recordOfLine(line), record);
}

TEST(RecordText, WhatIsNoRecordIsNothing) {
    const std::string line = lineOf(convertedRecord());
    for (std::size_t length = 0; length + 1 < line.size(); ++length)
        EXPECT_FALSE(recordOfLine(line.substr(0, length)));
    for (const char* text :
         {"{}", R"({"archive":"a","pdf":"b"})", R"({"archive":"a","pdf":"b","outcome":"other"})",
          R"({"archive":1,"pdf":"b","outcome":"failed"})",
          R"({"archive":"a","pdf":"b","pdf_bytes":"*","outcome":"failed"})"})
        EXPECT_FALSE(recordOfLine(text)) << text;
}

TEST(RecordText, FieldsMayBeMissing) {
    const auto record = recordOfLine(R"({"archive":"a","pdf":"b","outcome":"failed","missing":[{}]})");
    ASSERT_TRUE(record);
    EXPECT_FALSE(record->isConverted());
    EXPECT_EQ(record->missing.size(), 1u);
}

} // namespace
} // namespace qrv::batch
