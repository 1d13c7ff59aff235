#include "Runner/Save/Recorder.h"

#include "Runner/Base/File_Faults.h"
#include "Runner/Base/Printable.h"
#include "Runner/Game/Game.h"

#include <cerrno>
#include <cstring>
#include <utility>

namespace Runner
{
Recorder::Recorder(const std::string& path, std::vector<uint8_t> save) : m_path(path)
{
    m_recording.head.save = std::move(save);
}

Recorder::~Recorder()
{
    if (m_file != nullptr)
        std::fclose(m_file);
}

Answer Recorder::Ask(Question question, const std::function<Answer()>& ask)
{
    Answer answer = ask();
    m_answers.push_back({question, answer});
    return answer;
}

// The head waits for the first frame: a saved game that is gone on from asks, too.
void Recorder::BeginFrame(const Game& game)
{
    if (!m_hasHead)
        TakeHead(game);
}

void Recorder::EndFrame(const Game& game)
{
    if (m_recording.Add({game.input.Frame(), std::exchange(m_answers, {}), std::exchange(m_changes, {})},
                        game.FrameSum()))
        Write(EncodeRecordingBlock(m_recording.Blocks().back()));
}

bool Recorder::Finish(const Game& game, std::string& why)
{
    if (!m_hasHead)
        TakeHead(game);
    if (m_recording.CloseBlock())
        Write(EncodeRecordingBlock(m_recording.Blocks().back()));
    Write(EncodeRecordingEnd(m_recording.Frames()));
    FILE* const file = std::exchange(m_file, nullptr);
    if (file != nullptr && (std::fclose(file) != 0 || Faulty(FileOperation::Close)))
        Stop("write");
    why = m_fault;
    return why.empty();
}

void Recorder::TakeHead(const Game& game)
{
    m_hasHead = true;
    RecordingHead& head = m_recording.head;
    head.identity = game.Identity();
    head.files = game.scripts.files.Read();
    head.width = game.options.width;
    head.height = game.options.height;
    head.instructions = game.options.limits.instructions;
    head.settings = SettingsText(game.options.settings);
    head.answers = std::exchange(m_answers, {});
    WriteAgain();
}

void Recorder::Forget()
{
    m_answers.clear();
    m_changes.clear();
}

void Recorder::Cut(int frames, const std::vector<uint64_t>& sums)
{
    m_recording.Cut(frames, sums);
    WriteAgain();
}

void Recorder::Adopt(const Game& game, const std::vector<uint64_t>& sums)
{
    m_recording.head.identity = game.Identity();
    m_recording.head.files = game.scripts.files.Read();
    m_recording.SetSums(sums);
    WriteAgain();
}

void Recorder::Take(Recording recording)
{
    m_recording = std::move(recording);
    m_hasHead = true;
}

// The file from its start: the head and the blocks that are whole.
void Recorder::WriteAgain()
{
    if (m_path.empty() || !m_fault.empty() || !m_hasHead)
        return;
    if (m_file != nullptr)
        std::fclose(m_file);
    m_file = Faulty(FileOperation::Open) ? nullptr : std::fopen(m_path.c_str(), "wb");
    if (m_file == nullptr)
        return Stop("make");
    Write(EncodeRecordingHead(m_recording.head));
    for (const std::vector<uint8_t>& block : m_recording.Blocks())
        Write(EncodeRecordingBlock(block));
}

void Recorder::Write(const std::vector<uint8_t>& bytes)
{
    if (m_file == nullptr)
        return;
    const bool isGood = !Faulty(FileOperation::Write) &&
                        std::fwrite(bytes.data(), 1, bytes.size(), m_file) == bytes.size() && std::fflush(m_file) == 0;
    if (!isGood)
        Stop("write");
}

// What was written before stays, and replays.
void Recorder::Stop(const char* action)
{
    m_fault = std::string("cannot ") + action + " " + PrintableName(m_path) + ": " + std::strerror(errno) +
              "; the recording stops there";
    if (m_file != nullptr)
        std::fclose(m_file);
    m_file = nullptr;
}
} // namespace Runner
