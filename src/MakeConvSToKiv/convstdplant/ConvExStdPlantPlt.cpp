#include "MakeConvSToKiv/convstdplant/ConvExStdPlantPlt.h"

#include <new>
#include <string>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvDBEntryStdAcc.h"
#include "MakeConvSToKiv/convstdcom/ConvStdCom.h"
#include "MakeConvSToKiv/convstdplant/tm_plant.h"

ConvExStdPlantPlt::ConvExStdPlantPlt(ConvAppStd* appIn)
    : ConvExStdIndex(appIn, true, "data/setubi/plant/index", "TM_PLANT", 3, "001") {}

int32_t ConvExStdPlantPlt::Prepare() {
    const int32_t ret = ConvExStdIndex::Prepare();
    if (ret != 1) return ret;
    const int32_t committed = CommitBatch(connection, 0, true);
    if (committed != 0) {
        app->ReportError(committed, CONV_HERE, false, nullptr, nullptr);
        return committed;
    }
    return 1;
}

std::unique_ptr<ConvDBEntryStd> ConvExStdPlantPlt::NewWriter() {
    auto writer = std::unique_ptr<tm_plant>(new (std::nothrow) tm_plant(app, connection));
    plantWriter = writer.get();
    return writer;
}

void ConvExStdPlantPlt::DeleteWriter(std::unique_ptr<ConvDBEntryStd> writer) {
    if (writer.get() == plantWriter) plantWriter = nullptr;
    ConvExStdIndex::DeleteWriter(std::move(writer));
}

void ConvExStdPlantPlt::ClearRetryList() {
    ConvExStdIndex::ClearRetryList();
    if (plantWriter) plantWriter->RaiseCount();
}

int32_t ConvExStdPlantPlt::InsertRecord(ConvDBEntryStd* writer, ConvRow& record) {
    int32_t ret = ConvExStdIndex::InsertRecord(writer, record);
    if (ret != 0) return ret;
    const char* id = FindColumn(record, "ID");
    if (!id || !*id) return 0;
    ret = InsertRights(id);
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

int32_t ConvExStdPlantPlt::InsertRights(const char* plantId) {
    const std::string path = rootPath + "data/setubi/plant/" + plantId + "/pltacc";
    ConvStdCom rights(app, path.c_str());
    const int read = rights.Read();
    if (read < 0) {
        // A broken rights file was reported as a warning: the facility stays
        // without rights. Anything else stops the conversion.
        if (rights.CanContinue(read)) return 0;
        app->ReportError(read, CONV_HERE, false, nullptr, nullptr);
        return read;
    }
    ConvRow* first = rights.GetRecord(0);
    if (!first) return 0;
    ConvDBEntryStdAcc writer(app, connection, plantId, "ID");
    return writer.Entry("TM_ACCPLT", *first);
}
