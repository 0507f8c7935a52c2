// Stage B in its fixed order: schedule masters, facility masters, schedules,
// alarms, then minutes and visitors, each as a function of its own.
#include <memory>

#include "MakeConvEToKiv/convagenda/ConvExEntAgenda.h"
#include "MakeConvEToKiv/convagenda/ConvExEntAgendaIndex.h"
#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvEToKiv/convcom/ConvExEnt.h"
#include "MakeConvEToKiv/convplant/ConvExEntPlantAccPlt.h"
#include "MakeConvEToKiv/convplant/ConvExEntPlantIndex.h"
#include "MakeConvEToKiv/convsch/ConvExEntSchIndex.h"
#include "MakeConvEToKiv/convsch/ConvExEntSchPr.h"
#include "MakeConvEToKiv/convsch/ConvExEntSchPrAccess.h"
#include "MakeConvEToKiv/convvisitor/ConvExEntVisitor.h"
#include "MakeConvEToKiv/convvisitor/ConvExEntVisitorIndex.h"
#include "MakeConvEToKiv/mainconvsch/ConvBatSch.h"
#include "MakeConvLib/iofcom/CMSioObjMsg.h"

namespace {

using StepFactory = std::unique_ptr<ConvExEnt> (*)(ConvApp*);

// Every step's object runs with auto-commit on the target.
template <class Conv>
std::unique_ptr<ConvExEnt> Make(ConvApp* app) {
    return std::make_unique<Conv>(app, false);
}

// One line of the list: a table's step, or (make empty) the start of a new function.
struct MainStep {
    const char* label;
    StepFactory make;
};

constexpr MainStep Step(const char* label, StepFactory make) { return {label, make}; }
constexpr MainStep Function(const char* label) { return {label, nullptr}; }

// A table enters this list once its conversion exists.
constexpr MainStep kMainSteps[] = {
    // Schedule masters
    Step("機能管理者設定所属ユーザー（スケジュール）", Make<ConvExEntSchRModuleAssignUser>),  // B5
    Step("索引マスター（スケジュール）", Make<ConvExEntSchIndex>),                            // B6
    Step("スケジュール個人設定", Make<ConvExEntSchPrSchSetting>),                             // B7
    Step("個人スケジュール予定マスター", Make<ConvExEntSchPrSchEvent>),                       // B8
    Step("個人スケジュール場所マスター", Make<ConvExEntSchPrSchPlace>),                       // B9
    Step("個人表示グループマスター", Make<ConvExEntSchPrDispGroup>),                          // B10
    Step("ユーザーアクセス権組織", Make<ConvExEntSchPrAccessGroup>),                          // B11
    Step("ユーザーアクセス権ロール", Make<ConvExEntSchPrAccessRole>),                         // B12
    Step("ユーザーアクセス権ユーザー", Make<ConvExEntSchPrAccessUser>),                       // B13
    Step("ユーザーアクセス権全体", Make<ConvExEntSchPrAccessAll>),                            // B14
    // Facility masters
    Step("設備アクセス権組織", Make<ConvExEntPlantAccPltGroup>),                              // B19
    Step("設備アクセス権ロール", Make<ConvExEntPlantAccPltRole>),                             // B20
    Step("設備アクセス権ユーザー ", Make<ConvExEntPlantAccPltUser>),  // B21: the blank belongs to the label
    Step("設備アクセス権全体", Make<ConvExEntPlantAccPltAll>),                                // B22
    Step("機能管理者設定所属ユーザー（設備予約）", Make<ConvExEntPlantRModuleAssignUser>),    // B23
    Step("索引マスター（設備予約）", Make<ConvExEntPlantIndex>),                              // B24
    // Schedules
    // Alarms
    // Minutes
    Function("議事録"),
    Step("議事録共通設定", Make<ConvExEntAgendaAgendaSetting>),                               // B36
    Step("機能管理者設定所属ユーザー（議事録）", Make<ConvExEntAgendaRModuleAssignUser>),     // B37
    Step("議事録個人設定", Make<ConvExEntAgendaPAgendaSetting>),                              // B38
    Step("議事録", Make<ConvExEntAgendaAgenda>),                                              // B39
    Step("議事録添付ファイル", Make<ConvExEntAgendaAttachAgenda>),                            // B40
    Step("議事録議題", Make<ConvExEntAgendaAgendaTopic>),                                     // B41
    Step("議事録議題索引", Make<ConvExEntAgendaIndexAgendaTopic>),                            // B42
    Step("議事録参加者", Make<ConvExEntAgendaAgendaMember>),                                  // B43
    Step("索引マスター（議事録）", Make<ConvExEntAgendaIndex>),                               // B44
    // Visitors
    Function("来訪者管理"),
    Step("来訪者共通設定", Make<ConvExEntVisitorVisitorSetting>),                             // B45
    Step("応対場所マスター", Make<ConvExEntVisitorVisitorPlace>),                             // B46
    Step("受付担当者設定", Make<ConvExEntVisitorVisitorReceptPlace>),                         // B47
    Step("来訪者個人設定", Make<ConvExEntVisitorPVisitorSetting>),                            // B48
    Step("来訪者情報", Make<ConvExEntVisitorVisitor>),                                        // B49
    Step("索引マスター（来訪者管理）", Make<ConvExEntVisitorIndex>),                          // B50
};

}  // namespace

int32_t ConvBatSch::RunMain() {
    int32_t ret = LoadMessageFile("sch");
    if (ret != 0) {
        app_->ReportError(ret, CONV_HERE, true, "sch", "ローカルファイルの読み込みに失敗しました。");
        return ret;
    }
    for (const MainStep& step : kMainSteps) {
        if (!step.make) {
            app_->SetFunction(step.label, true);
            continue;
        }
        std::unique_ptr<ConvExEnt> conv = step.make(app_);
        ret = RunStep(conv.get(), step.label);
        conv.reset();
        if (ret != 0) {
            app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    }
    return 0;
}
