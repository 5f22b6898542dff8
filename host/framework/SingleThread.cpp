#include "SingleThread.h"

namespace {

std::function<void()> &currentTurn()
{
    static std::function<void()> turn;
    return turn;
}

} // namespace

void SingleThread::setTurn(std::function<void()> turn)
{
    currentTurn() = std::move(turn);
}

bool SingleThread::isOn()
{
    return bool(currentTurn());
}

void SingleThread::giveTurn()
{
    currentTurn()();
}
