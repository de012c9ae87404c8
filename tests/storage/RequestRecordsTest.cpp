#include "storage/RequestRecords.h"

#include <gtest/gtest.h>

namespace {

using namespace tvfirmware;

TEST(AsyncReqNotify, Clear_EmptiesEveryField)
{
    AsyncReqNotify record = {"channel", "reqId", "event", "extra"};
    record.clear();
    EXPECT_EQ(record.channel, "");
    EXPECT_EQ(record.reqId, "");
    EXPECT_EQ(record.event, "");
    EXPECT_EQ(record.extra, "");
}

TEST(RequestRecords, FieldOrder_IsFixed)
{
    const AsyncReqNotify request = {"channel", "reqId", "event", "extra"};
    EXPECT_EQ(request.channel + request.reqId + request.event + request.extra, "channelreqIdeventextra");
    const ScanChannel scan = {"channel", "reqId", "event", "filterType", "extra"};
    EXPECT_EQ(scan.channel + scan.reqId + scan.event + scan.filterType + scan.extra, "channelreqIdeventfilterTypeextra");
    const ThumbnailChannel thumbnail = {"channel", "reqId", "event", "extra"};
    EXPECT_EQ(thumbnail.channel + thumbnail.reqId + thumbnail.event + thumbnail.extra, "channelreqIdeventextra");
}

TEST(RequestRecords, New_AreEmpty)
{
    const AsyncReqNotify request;
    EXPECT_EQ(request.channel + request.reqId + request.event + request.extra, "");
    const ScanChannel scan;
    EXPECT_EQ(scan.channel + scan.reqId + scan.event + scan.filterType + scan.extra, "");
    const ThumbnailChannel thumbnail;
    EXPECT_EQ(thumbnail.channel + thumbnail.reqId + thumbnail.event + thumbnail.extra, "");
}

} // namespace
