// The system tables every archive starts with, in the order they are made, and their first rows.
#include "archive/clsarchivio.h"

namespace velmora {

namespace {

struct SystemTable {
    const char* Name;
    const char* Columns;
    const char* Types;
    const char* KeyFields;
    const char* OrderFields;
    const char* DisplayRules;
};

const char* const ModuleRules = "idModulo=Moduli.idModulo:Nome";

const SystemTable SystemTables[] = {
    {"ZSYSOPTIONS", "Name,Value", "TT", "Name", "Name", ""},
    {"ZSYSFOLDERS", "Code,Name,Parent,Type", "LTLL", "Parent,Code", "Parent,Code", ""},
    {"ZSYSARIANNA", "Table,Fields,KeyField,DescField", "TTTT", "Table", "Table", ""},
    {"ZSYSSUBSTS", "Order,Macro,Value", "LTT", "Macro", "Order,Macro", ""},
    {"ZSYSRULES", "idRule,Name,Entry,Text", "LTTT", "idRule", "Name,Entry", ""},
    {"ZSYSPARS", "idPar,Key,Order,Name,Values,Note", "LTLTTT", "idPar", "Key,Order,Name", ""},
    {"ZSYSVARS", "Name,Value", "TT", "Name", "Name", ""},
    {"ZSYSUPDATES", "Batch,Table,Expression,ExpField,CopyField", "TTTTT", "Batch,Table", "Batch,Table", ""},
    {"ZSYSODBC", "idODBC,Name,Driver,Server,Options,DSN,User,Password,Database,Status", "LTTTTTTTTL",
     "idODBC", "Name", ""},
    {"ZSYSBLOBS", "idBlob,Type,FileName,CryptCode,BlobID", "LLTLU", "idBlob", "idBlob", ""},
    {"ZSYSMAILS", "idMail,idUser,Type,Date,To,CC,CCN,Subject,Text,Extra", "LLLDTTTTTT", "idMail", "idMail",
     ""},
    {"ZSYSMAILATT", "idMailAtt,idMail,idBlob", "LLL", "idMailAtt", "idMailAtt", ""},
    {"ZSYST_STYLES",
     "idStyle,Name,Font,Size,Color,BackColor,Bold,Italic,Strikethrough,Underline,Margins,Align,DrawFormula",
     "LTTFLLLLLLLLT", "idStyle", "Name",
     "Align=|'0':'predefined'|'1':'left'|'2':'center'|'3':'right',Bold=|'0':'normal'|'1':'bold',"
     "Italic=|'0':'normal'|'1':'italic',Strikethrough=|'0':'normal'|'1':'strikethrough',"
     "Underline=|'0':'normal'|'1':'underline'"},
    {"ZSYST_SHEETS", "idSheet,idStyle,Name,Code,Order,ColumnWidths,RowWidths", "LLTTLll", "idSheet",
     "Order,Name", "idStyle=ZSYST_STYLES.idStyle:Name"},
    {"ZSYST_CELLS",
     "idCell,idSheet,Row,Column,Protection,Type,Format,idStyle,Formula,Value,Validation,Reference,Error,"
     "Width,"
     "Height",
     "LLLLLLLTTTTTTLL", "idCell", "idSheet,Row,Column",
     "idSheet=ZSYST_SHEETS.idSheet:Name,idStyle=ZSYST_STYLES.idStyle:Name,"
     "Protection=|'0':'locked'|'1':'unlocked'|'2':'hidden',"
     "Type=|'0':'text'|'1':'currency'|'2':'date'|'3':'decimal'|'4':'integer'"},
    {"ZSYSMODULI", "idModulo,idSubKey,Nome,Note,Configurazione,Sistema,Sql,Rotture,Titolo", "LLTTTLTTT",
     "idModulo", "Nome", ""},
    {"ZSYSCELLEMODULO", "idCellaModulo,idModulo,X,Y,W,H,Stile,Ordine,Testo,Caratteri,Sfondo", "LLLLLLTLTLT",
     "idCellaModulo", "idModulo,Ordine,Y,X,idCellaModulo", ModuleRules},
    {"ZSYSPAGINEMODULO", "idPaginaModulo,idModulo,Pagina,W,H,DX,DY,Rotazione", "LLLLLLLF", "idPaginaModulo",
     "idModulo,Pagina", ModuleRules},
    {"ZSYSFILES", "idFile,Key,Name,Source,Data,Size,UserId,Note", "LTTTTLLT", "idFile", "Key,Name", ""},
};

void InsertFirstRows(clsArchivio& archive, const clsString& table) {
    if (table == "ZSYSOPTIONS") {
        archive.InsertRow(table, "Name,Value", {"BACKUP_ON_SAVING", "true"});
    } else if (table == "ZSYSFOLDERS") {
        const clsString columns("Name,Code,Parent");
        archive.InsertRow(table, columns, {"Tables", 1, 0});
        archive.InsertRow(table, columns, {"User", 2, 1});
        archive.InsertRow(table, columns, {"Application", 3, 1});
        archive.InsertRow(table, columns, {"System", 4, 1});
        archive.InsertRow(table, columns, {"ZSYSCOPY", 5, 4});
        archive.InsertRow(table, columns, {"ZSYSTRASH", 6, 4});
    }
}

} // namespace

void clsArchivio::CreateSystemTables() {
    for (const SystemTable& system : SystemTables) {
        clsTableDescriptor table;
        table.Name = system.Name;
        table.Columns = system.Columns;
        table.Types = system.Types;
        table.KeyFields = system.KeyFields;
        table.OrderFields = system.OrderFields;
        table.DisplayRules = system.DisplayRules;
        if (CreateTable(table)) InsertFirstRows(*this, table.Name);
    }
}

} // namespace velmora
