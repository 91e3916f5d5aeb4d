// The archive: the system tables a new one holds, row sets over real statements, and statements that must
// fail without touching anything outside the database.
#include <gtest/gtest.h>

#include <string>
#include <unistd.h>

#include "archive/clsarchivio.h"
#include "nuvobase/temp_folder.h"

using nuvobase::clsCStrings;
using nuvobase::clsString;
using velmora::clsArchivio;
using velmora::clsTableDescriptor;

namespace {

std::string Single(clsArchivio& archive, const char* sql) {
    clsString value;
    return archive.SingleValue(clsString(sql), value) ? value.Text() : "<failed>";
}

} // namespace

using ArchiveTest = nuvobase_test::TempFolder;

TEST_F(ArchiveTest, SystemTablesColumnsRowSetsAndBadStatements) {
    // The first rows of the system tables are read through the formula tests; made again, none comes twice.
    clsArchivio archive;
    archive.CreateSystemTables();
    EXPECT_EQ(Single(archive, "select group_concat(Name || Code || Parent, ',') from ZSYSFOLDERS"),
              "Tables10,User21,Application31,System41,ZSYSCOPY54,ZSYSTRASH64");
    EXPECT_EQ(Single(archive, "select count(*) from ZSYSOPTIONS"), "1");

    // Columns by letter, and quoted names.
    clsTableDescriptor table;
    table.Name = "Order";
    table.Columns = "@0,X,Y,Table,Q";
    table.Types = "LFTTq";
    ASSERT_TRUE(archive.CreateTable(table));
    EXPECT_FALSE(archive.CreateTable(table));
    ASSERT_TRUE(archive.InsertRow(table.Name, table.Columns, {12, "1.5", "it's", "T", 7}));
    EXPECT_EQ(Single(archive,
                     "select typeof(\"@0\") || typeof(X) || typeof(Y) || typeof(\"Table\") || typeof(Q) "
                     "from \"Order\""),
              "integerrealtexttexttext");
    EXPECT_EQ(Single(archive, "select Y from \"Order\""), "it's");

    const int rows =
        archive.OpenRowSet(clsString("select Code, Name from ZSYSFOLDERS order by Code desc"), 0);
    ASSERT_GE(rows, 0);
    EXPECT_EQ(archive.RowCount(rows), 6);
    EXPECT_EQ(archive.FieldIndex(rows, clsString("name")), 1);
    EXPECT_EQ(archive.FieldInteger(rows, clsString("Code")), 6);
    EXPECT_EQ(archive.FindInRowSet(rows, clsString("Name"), clsString("user")), 4);
    EXPECT_STREQ(archive.FieldText(rows, 1).Text(), "User");
    EXPECT_EQ(archive.MoveNext(rows), 5);
    EXPECT_EQ(archive.MoveNext(rows), -1);
    EXPECT_TRUE(archive.AtEnd(rows));

    const int empty = archive.OpenRowSet(clsString("select * from ZSYSVARS"), 1);
    EXPECT_NE(empty, rows);
    EXPECT_TRUE(archive.AtEnd(empty));
    archive.CloseRowSet(rows);
    EXPECT_EQ(archive.RowCount(rows), -1);
    EXPECT_TRUE(archive.AtEnd(rows));
    EXPECT_EQ(archive.OpenRowSet(clsString("select 1"), 0), rows); // the closed slot serves again

    clsCStrings keys, values;
    values.Add(clsString("System"));
    archive.ValueSearch(clsString("ZSYSFOLDERS"), clsString(), values, clsArchivio::ValueSearchEqual, keys);
    EXPECT_STREQ(keys.GetText(",").Text(), "1"); // the first key column, Parent

    // Statements that fail, and statements that would reach a file or run without end, all take the failure
    // path; the tables stay as they were.
    const std::string file = Path("x.db");
    for (const std::string& sql :
         {std::string("select nothing from nowhere"), std::string("select 1; drop table ZSYSFOLDERS"),
          "attach database '" + file + "' as x", "vacuum into '" + file + "'",
          std::string("pragma temp_store = 1"),
          std::string(
              "with recursive c(x) as (select 1 union all select x + 1 from c) select count(*) from c"),
          std::string("select length(randomblob(100000000))"), std::string("select 'unclosed"),
          std::string("")}) {
        SCOPED_TRACE(sql);
        EXPECT_EQ(archive.OpenRowSet(clsString(sql.c_str()), 0), -1);
    }
    EXPECT_NE(access(file.c_str(), F_OK), 0);
    EXPECT_EQ(Single(archive, "select count(*) from ZSYSFOLDERS"), "6");
    EXPECT_EQ(archive.RowCount(-1), -1);
    EXPECT_EQ(archive.MoveNext(99), -1);
    EXPECT_STREQ(archive.FieldText(99, 0).Text(), "");
}

// A writable row set changes its table only when each of its rows stands for one row of one table; the
// others change in memory alone.
TEST(Archive, WritableRowSets) {
    const struct {
        const char* Sql;
        const char* After; // Name of the folder with Code 2 after the change
    } cases[] = {
        {"select Name from ZSYSFOLDERS where Code = 2", "changed"},
        {"  SELECT\tName from ZSYSFOLDERS where Code = 2", "changed"},
        {"select distinct Name from ZSYSFOLDERS where Code = 2", "User"},
        {"select Name from ZSYSFOLDERS where Code = 2 group by Name", "User"},
        {"select upper(Name) as Name from ZSYSFOLDERS where Code = 2", "User"},
        {"select f.Name from ZSYSFOLDERS f join ZSYSOPTIONS o where f.Code = 2", "User"},
        {"select Name from ZSYSFOLDERS where Code = 2 union select Name from ZSYSFOLDERS where 0", "User"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.Sql);
        clsArchivio archive;
        const int handle = archive.OpenRowSet(clsString(row.Sql), clsArchivio::ModeWritable);
        ASSERT_GE(handle, 0);
        EXPECT_TRUE(archive.SetFieldText(handle, clsString("Name"), clsString("changed")));
        EXPECT_EQ(archive.FieldText(handle, clsString("Name")), "changed");
        EXPECT_EQ(Single(archive, "select Name from ZSYSFOLDERS where Code = 2"), row.After);
        // A copy of a written row reaches the table too.
        EXPECT_EQ(archive.AddRow(handle, 0), 1);
        EXPECT_EQ(Single(archive, "select count(*) from ZSYSFOLDERS where Name = 'changed'"),
                  std::string(row.After) == "changed" ? "2" : "0");
    }
}
