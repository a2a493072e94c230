#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "app/CWindowOperationManager.h"
#include "app/LastShownPercents.h"
#include "audio/IProgress.h"
#include "foundation/CObjectError.h"
#include "foundation/ISystem.h"
#include "foundation/posix/CPackage.h"
#include "foundation/posix/CWindowTimer.h"

using fenn::make;
using fenn::P;
using namespace tbx;

namespace {

// A job of a number of equal steps; it reports after each step and reads
// its cancel flag before the next.
class StepOperation : public COperation
{
public:
    StepOperation(std::string name, int steps, std::vector<std::string>* runLog = nullptr)
        : name(std::move(name)), steps(steps), runLog(runLog)
    {
    }

    bool run() override
    {
        if (runLog) runLog->push_back(name);
        cancelled = false;
        stepsDone = 0;
        for (int step = 1; step <= steps && !cancelled; ++step) {
            if (beforeStep) beforeStep(step);
            progress = static_cast<double>(step) / steps;
            stepsDone = step;
            notifyProgress();
        }
        return succeeds;
    }
    void cancel() override { cancelled = true; }
    double getProgress() override { return progress; }
    fenn::String getText() override { return fenn::String::copyOf(name); }

    std::string name;
    int steps;
    std::vector<std::string>* runLog;
    std::function<void(int step)> beforeStep;
    bool succeeds = true;
    bool cancelled = false;
    int stepsDone = 0;
    double progress = 0.0;
};

class ProgressRecorder : public fenn::CObject, public virtual IOperationListener
{
public:
    void onOperationProgress(IOperation* operation) override { values.push_back(operation->getProgress()); }
    std::vector<double> values;
};

void expectValues(const std::vector<double>& actual, const std::vector<double>& expected)
{
    ASSERT_EQ(actual.size(), expected.size()) << ::testing::PrintToString(actual);
    for (std::size_t i = 0; i < actual.size(); ++i) EXPECT_DOUBLE_EQ(actual[i], expected[i]) << "value " << i;
}

TEST(Operations, WeightsMakeTheOverallProgressThroughNestedManagers)
{
    std::vector<std::string> order;
    const P<COperationManager> outer = make<COperationManager>();
    const P<COperationManager> inner = make<COperationManager>();
    const P<StepOperation> a = make<StepOperation>("a", 2, &order);
    inner->add(a, 1.0);
    inner->add(make<StepOperation>("b", 2, &order), 1.0);
    outer->add(inner, 1.0);
    outer->add(inner, 3.0);  // a new weight, not a second entry
    outer->add(make<StepOperation>("alone", 2, &order), 1.0);
    for (double bad : {0.0, -1.0}) EXPECT_THROW(outer->add(make<StepOperation>("bad", 1), bad), fenn::CInvalidArgError);
    const P<ProgressRecorder> recorder = make<ProgressRecorder>();
    outer->addListener(recorder.get());
    std::vector<IOperation*> atWork;
    a->beforeStep = [&](int) { atWork = {outer->getSubOperation().get(), inner->getSubOperation().get()}; };

    ASSERT_TRUE(outer->run());
    EXPECT_EQ(atWork, (std::vector<IOperation*>{inner.get(), a.get()}));
    EXPECT_FALSE(outer->getSubOperation());
    EXPECT_FALSE(outer->isRunning());
    ASSERT_EQ(order.size(), 3u);
    // Table order decides whether the inner manager (3/4 of the whole, each
    // of its children 3/8) or the lone child (1/4) runs first. Values come
    // before each child, at each step and after each child.
    if (order[0] == "alone") {
        expectValues(recorder->values,
                     {0.0, 0.125, 0.25, 0.25, 0.25, 0.25, 0.4375, 0.625, 0.625, 0.625, 0.8125, 1.0, 1.0, 1.0});
    } else {
        expectValues(recorder->values,
                     {0.0, 0.0, 0.1875, 0.375, 0.375, 0.375, 0.5625, 0.75, 0.75, 0.75, 0.75, 0.875, 1.0, 1.0});
    }
    outer->removeListener(recorder.get());
}

TEST(Operations, RunRulesForRunningCancelledAndFailedChildren)
{
    // run inside a run answers false and changes nothing.
    {
        const P<COperationManager> manager = make<COperationManager>();
        const P<StepOperation> child = make<StepOperation>("child", 2);
        manager->add(child, 1.0);
        std::vector<double> around;
        child->beforeStep = [&](int step) {
            if (step == 2) around = {manager->getProgress(), manager->run() ? 1.0 : 0.0, manager->getProgress()};
        };
        EXPECT_TRUE(manager->run());
        expectValues(around, {0.5, 0.0, 0.5});
        EXPECT_EQ(child->stepsDone, 2);
    }
    // A cancel before the run is forgotten; one during a child stops it at
    // its next step and no further child runs, and run still answers true.
    {
        std::vector<std::string> order;
        const P<COperationManager> manager = make<COperationManager>();
        const P<StepOperation> a = make<StepOperation>("a", 4, &order);
        const P<StepOperation> b = make<StepOperation>("b", 4, &order);
        manager->add(a, 1.0);
        manager->add(b, 1.0);
        manager->cancel();
        EXPECT_TRUE(manager->run());
        EXPECT_EQ(order.size(), 2u);
        EXPECT_EQ(a->stepsDone + b->stepsDone, 8);

        order.clear();
        const auto cancelAtStep2 = [&](int step) {
            if (step == 2) manager->cancel();
        };
        a->beforeStep = cancelAtStep2;
        b->beforeStep = cancelAtStep2;
        EXPECT_TRUE(manager->run());
        ASSERT_EQ(order.size(), 1u);
        EXPECT_EQ((order[0] == "a" ? a : b)->stepsDone, 2);
        EXPECT_LT(manager->getProgress(), 0.5);
        EXPECT_FALSE(manager->isRunning());
    }
    // A failed child fails the parent, which stays running and refuses
    // every later run; the failure passes up through a nested manager.
    {
        std::vector<std::string> order;
        const P<COperationManager> outer = make<COperationManager>();
        const P<COperationManager> inner = make<COperationManager>();
        const P<StepOperation> failing = make<StepOperation>("failing", 1, &order);
        failing->succeeds = false;
        inner->add(failing, 1.0);
        outer->add(inner, 1.0);
        outer->add(make<StepOperation>("other", 1, &order), 1.0);
        EXPECT_FALSE(outer->run());
        EXPECT_EQ(order.back(), "failing");
        EXPECT_TRUE(outer->isRunning());
        EXPECT_EQ(outer->getSubOperation().get(), inner.get());
        EXPECT_EQ(inner->getSubOperation().get(), failing.get());
        order.clear();
        EXPECT_FALSE(outer->run());
        EXPECT_FALSE(inner->run());
        EXPECT_TRUE(order.empty());
    }
}

class RecordingWindow : public fenn::CObject, public virtual IProgressWindow
{
public:
    void setActionText(const fenn::String& text) override { texts.push_back(text.toStdString()); }
    void setProgress(int percent) override { bars.push_back(percent); }
    void update() override { ++updates; }
    void setCancelFlag(bool cancel) override { cancelFlag = cancel; }
    bool getCancelFlag() const override { return cancelFlag; }

    std::vector<std::string> texts;
    std::vector<int> bars;
    int updates = 0;
    bool cancelFlag = false;
};

class WindowOperations : public ::testing::Test
{
protected:
    WindowOperations()
    {
        fenn::setSystem(m_system);
        m_manager->setProgressWindow(m_window);
    }
    ~WindowOperations() override
    {
        m_manager->removeAll();
        m_manager->setProgressWindow(nullptr);
        fenn::setSystem(nullptr);
    }

    fenn::posix::CPlatformSession m_platform;
    P<fenn::posix::CSystem> m_system = make<fenn::posix::CSystem>();
    P<CWindowOperationManager> m_manager = CWindowOperationManager::getInstance();
    P<RecordingWindow> m_window = make<RecordingWindow>();
};

TEST_F(WindowOperations, WindowShowsTextsOnChangeAndTheBarOnlyWhenThePercentMoves)
{
    EXPECT_EQ(CWindowOperationManager::getInstance().get(), m_manager.get());
    std::vector<std::string> order;
    m_manager->add(make<StepOperation>("first", 1000, &order), 1.0);
    m_manager->add(make<StepOperation>("second", 1000, &order), 1.0);
    ASSERT_TRUE(m_manager->run());

    EXPECT_EQ(m_window->texts, order);
    EXPECT_EQ(m_window->updates, 2000);
    ASSERT_FALSE(m_window->bars.empty());
    for (std::size_t i = 1; i < m_window->bars.size(); ++i) EXPECT_NE(m_window->bars[i], m_window->bars[i - 1]);
    EXPECT_LE(m_window->bars.size(), 101u);
    EXPECT_EQ(m_window->bars.back(), 100);
    EXPECT_EQ(getLastShownPercents().window, 100);

    // The last shown percent is the process's: a job that reports 100 at
    // once after one that ended there leaves the bar alone.
    m_manager->removeAll();
    m_window->bars.clear();
    m_manager->add(make<StepOperation>("at once", 1), 1.0);
    ASSERT_TRUE(m_manager->run());
    EXPECT_TRUE(m_window->bars.empty());
}

TEST_F(WindowOperations, CancelPostedFromAnotherThreadIsSeenAtTheNextProgressPoint)
{
    const P<StepOperation> job = make<StepOperation>("job", 100);
    // The cancel button's action arrives from elsewhere before step 3.
    job->beforeStep = [this](int step) {
        if (step == 3)
            std::thread([window = m_window] { fenn::getSystem()->postAction(make<CCancelAction>(window)); }).join();
    };
    m_manager->add(job, 1.0);
    m_window->cancelFlag = true;  // left over from an earlier job

    ASSERT_TRUE(m_manager->run());
    // Step 3's progress point pumps and runs the action; step 4's reads the
    // flag and cancels; the job stops before step 5.
    EXPECT_EQ(job->stepsDone, 4);
    EXPECT_TRUE(m_manager->isCancelled());
    EXPECT_FALSE(m_manager->isRunning());
}

TEST_F(WindowOperations, JobThatPumpsKeepsAWindowTimerFiring)
{
    class Ticks : public fenn::CObject, public virtual fenn::posix::CWindowTimer::ITimerListener
    {
    public:
        void timerFired(fenn::posix::CWindowTimer*) override { ++count; }
        int count = 0;
    };
    const P<fenn::posix::CWindowTimer> timer = make<fenn::posix::CWindowTimer>();
    const P<Ticks> ticks = make<Ticks>();
    timer->addListener(ticks.get());
    timer->setInterval(5);
    timer->start();

    // The job's steps go on until the timer has fired three times.
    const P<StepOperation> job = make<StepOperation>("job", 1000000);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    job->beforeStep = [&](int) {
        if (ticks->count >= 3 || std::chrono::steady_clock::now() > deadline) job->cancel();
    };
    m_manager->add(job, 1.0);
    ASSERT_TRUE(m_manager->run());
    EXPECT_GE(ticks->count, 3);
    EXPECT_LT(job->stepsDone, 1000000);
}

}  // namespace
