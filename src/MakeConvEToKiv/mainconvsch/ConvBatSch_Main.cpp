// Stage B in its fixed order: schedule masters, facility masters, schedules,
// alarms, then minutes and visitors, each as a function of its own.
#include <memory>

#include "MakeConvEToKiv/convagenda/ConvExEntAgenda.h"
#include "MakeConvEToKiv/convagenda/ConvExEntAgendaIndex.h"
#include "MakeConvEToKiv/convagent/ConvExEntAgent.h"
#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvEToKiv/convcom/ConvExEnt.h"
#include "MakeConvEToKiv/convplant/ConvExEntPlantAccPlt.h"
#include "MakeConvEToKiv/convplant/ConvExEntPlantIndex.h"
#include "MakeConvEToKiv/convplant/ConvExEntPlantMaster.h"
#include "MakeConvEToKiv/convsch/ConvExEntSchIndex.h"
#include "MakeConvEToKiv/convsch/ConvExEntSchMaster.h"
#include "MakeConvEToKiv/convsch/ConvExEntSchPr.h"
#include "MakeConvEToKiv/convsch/ConvExEntSchPrAccess.h"
#include "MakeConvEToKiv/convsch/ConvExEntSchSchedule.h"
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
    Step("スケジュール共通設定", Make<ConvExEntSchSchSetting>),
    Step("スケジュール予定マスター", Make<ConvExEntSchSchEvent>),
    Step("スケジュール場所マスター", Make<ConvExEntSchSchPlace>),
    Step("その他アイコン", Make<ConvExEntSchSchIcon>),
    Step("機能管理者設定所属ユーザー（スケジュール）", Make<ConvExEntSchRModuleAssignUser>),
    Step("索引マスター（スケジュール）", Make<ConvExEntSchIndex>),
    Step("スケジュール個人設定", Make<ConvExEntSchPrSchSetting>),
    Step("個人スケジュール予定マスター", Make<ConvExEntSchPrSchEvent>),
    Step("個人スケジュール場所マスター", Make<ConvExEntSchPrSchPlace>),
    Step("個人表示グループマスター", Make<ConvExEntSchPrDispGroup>),
    Step("ユーザーアクセス権組織", Make<ConvExEntSchPrAccessGroup>),
    Step("ユーザーアクセス権ロール", Make<ConvExEntSchPrAccessRole>),
    Step("ユーザーアクセス権ユーザー", Make<ConvExEntSchPrAccessUser>),
    Step("ユーザーアクセス権全体", Make<ConvExEntSchPrAccessAll>),
    // Facility masters
    Step("設備予約共通設定", Make<ConvExEntPlantPltSetting>),
    Step("設備予約利用目的", Make<ConvExEntPlantPltEvent>),
    Step("設備グループマスター", Make<ConvExEntPlantPltGroup>),
    Step("設備マスター", Make<ConvExEntPlantPlant>),
    Step("設備アクセス権組織", Make<ConvExEntPlantAccPltGroup>),
    Step("設備アクセス権ロール", Make<ConvExEntPlantAccPltRole>),
    Step("設備アクセス権ユーザー ", Make<ConvExEntPlantAccPltUser>),  // the blank belongs to the label
    Step("設備アクセス権全体", Make<ConvExEntPlantAccPltAll>),
    Step("機能管理者設定所属ユーザー（設備予約）", Make<ConvExEntPlantRModuleAssignUser>),
    Step("索引マスター（設備予約）", Make<ConvExEntPlantIndex>),
    Step("設備予約個人設定", Make<ConvExEntPlantPPltSetting>),
    Step("設備情報インポートエクスポート順", Make<ConvExEntPlantPPltMstCsvindex>),
    // Schedules
    Step("スケジュール", Make<ConvExEntSchSchedule>),
    Step("スケジュール繰返日", Make<ConvExEntSchSchRepdate>),
    Step("スケジュール添付ファイル", Make<ConvExEntSchAttachSchedule>),
    Step("スケジュール登録先", Make<ConvExEntSchScheduleOtherTo>),
    Step("スケジュール登録先ユーザー情報/付箋/アラーム", Make<ConvExEntSchScheduleUserInfo>),
    // Alarms
    Step("アラーム共通設定", Make<ConvExEntAgentAlmSetting>),                                 // B32
    Step("アラーム個人設定", Make<ConvExEntAgentPrAlmSetting>),                               // B33
    Step("個人予定通知設定", Make<ConvExEntAgentPrAgent>),                                    // B34
    Step("スケジューラ", Make<ConvExEntAgentScheduler>),                                      // B35
    // Minutes
    Function("議事録"),
    Step("議事録共通設定", Make<ConvExEntAgendaAgendaSetting>),
    Step("機能管理者設定所属ユーザー（議事録）", Make<ConvExEntAgendaRModuleAssignUser>),
    Step("議事録個人設定", Make<ConvExEntAgendaPAgendaSetting>),
    Step("議事録", Make<ConvExEntAgendaAgenda>),
    Step("議事録添付ファイル", Make<ConvExEntAgendaAttachAgenda>),
    Step("議事録議題", Make<ConvExEntAgendaAgendaTopic>),
    Step("議事録議題索引", Make<ConvExEntAgendaIndexAgendaTopic>),
    Step("議事録参加者", Make<ConvExEntAgendaAgendaMember>),
    Step("索引マスター（議事録）", Make<ConvExEntAgendaIndex>),
    // Visitors
    Function("来訪者管理"),
    Step("来訪者共通設定", Make<ConvExEntVisitorVisitorSetting>),
    Step("応対場所マスター", Make<ConvExEntVisitorVisitorPlace>),
    Step("受付担当者設定", Make<ConvExEntVisitorVisitorReceptPlace>),
    Step("来訪者個人設定", Make<ConvExEntVisitorPVisitorSetting>),
    Step("来訪者情報", Make<ConvExEntVisitorVisitor>),
    Step("索引マスター（来訪者管理）", Make<ConvExEntVisitorIndex>),
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
