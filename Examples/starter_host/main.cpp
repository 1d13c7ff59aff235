// Split screen without scripts: a walker crosses a room, and two cameras follow it. The left one moves as soon as the
// walker leaves the middle of its view; the right one keeps it in the centre, six units a frame at most. After ten
// frames everything is saved. What the next ten frames show is the same before and after loading.
#include "host.h"

#include <cstdio>

namespace
{
constexpr int FIGURE = 0, WALKER = 1; // objects of this game: a walker is a figure, and figures are followed
constexpr int VIEWS = 2;
const char* const VIEW_NAMES[VIEWS] = {"left", "right"};

// As game data describes views: visible; the room's rectangle; the screen's; borders; speeds; what to follow.
constexpr KvRoomView VIEW_RECORDS[VIEWS] = {
    {1, 0, 0, 320, 240, 0, 0, 320, 240, 100, 60, -1, -1, FIGURE},
    {1, 40, 180, 160, 120, 320, 0, 320, 240, 80, 60, 6, 6, FIGURE},
};

struct Area
{
    float x, y, w, h;
};

typedef std::vector<Area> Shown; // what each view showed, in each frame

void StartRoom()
{
    OpenRoom(1000, 600);
    for (int view = 0; view < VIEWS; ++view)
    {
        KvRoomView record = VIEW_RECORDS[view];
        CCamera* const camera = g_CM.CreateCameraFromView(&record); // null without memory
        Run_Room->r_view[view]->cameraID = camera != nullptr ? camera->GetID() : -1;
    }
    g_CM.StartRoom();
}

void EndRoom()
{
    g_CM.EndRoom();
    for (int view = 0; view < VIEWS; ++view)
        g_CM.DestroyCamera(Run_Room->r_view[view]->cameraID);
    CloseRoom();
}

// Begin, update, apply, draw, end. Any callback may destroy the camera, so that each step asks for it again.
void DrawView(int cameraID, Shown& shown)
{
    if (CCamera* const camera = g_CM.GetCamera(cameraID))
        camera->Begin();
    if (CCamera* const camera = g_CM.GetCamera(cameraID))
        camera->CameraUpdate();
    CCamera* const camera = g_CM.GetCamera(cameraID);
    if (camera == nullptr)
        return;
    camera->ApplyMatrices();
    shown.push_back({g_ViewAreaX, g_ViewAreaY, g_ViewAreaW, g_ViewAreaH}); // here you draw, with MatrixOf(eM_View)...
    if (CCamera* const again = g_CM.GetCamera(cameraID))
        again->End();
}

Shown PlayTenFrames(CInstance& walker)
{
    Shown shown;
    for (int frame = 0; frame < 10; ++frame)
    {
        walker.x += 8.0f;
        walker.y += 2.0f;
        walker.m_flags |= eInstanceFlag_bbox_dirty;
        for (int view = 0; view < VIEWS; ++view)
            DrawView(Run_Room->r_view[view]->cameraID, shown);
    }
    return shown;
}

// The cameras, and what moves: your own state goes into the same buffer.
void Save(SaveBuffer& buffer, const CInstance& walker)
{
    g_CM.Serialize(&buffer);
    buffer.Write(walker.x);
    buffer.Write(walker.y);
}

void Load(SaveBuffer& buffer, CInstance& walker)
{
    buffer.Rewind();
    g_CM.DeSerialize(&buffer);
    g_CM.BuildRoomCameraList(); // the loaded cameras are new ones, in the slots of the saved
    walker.x = buffer.ReadFloat();
    walker.y = buffer.ReadFloat();
}

void Print(const char* when, const Shown& shown)
{
    printf("%s\n", when);
    for (size_t i = 0; i < shown.size(); ++i)
        printf("  frame %2zu, %-5s shows %6.1f, %6.1f, %5.1f x %5.1f\n", i / VIEWS + 1, VIEW_NAMES[i % VIEWS],
               static_cast<double>(shown[i].x), static_cast<double>(shown[i].y), static_cast<double>(shown[i].w),
               static_cast<double>(shown[i].h));
}

bool AreEqual(const Shown& a, const Shown& b)
{
    bool equal = a.size() == b.size();
    for (size_t i = 0; equal && i < a.size(); ++i)
        equal = a[i].x == b[i].x && a[i].y == b[i].y && a[i].w == b[i].w && a[i].h == b[i].h;
    return equal;
}
} // namespace

int main()
{
    g_CM.SetInitialLoadHighPoint(); // the game is loaded; it has no cameras outside of its rooms
    DeriveObject(WALKER, FIGURE);
    StartRoom();
    CInstance* const walker = NewInstance(200.0f, 300.0f, WALKER);
    Print("ten frames", PlayTenFrames(*walker));

    SaveBuffer saved;
    Save(saved, *walker);
    const Shown without = PlayTenFrames(*walker);
    Print("ten more", without);
    Load(saved, *walker);
    const bool equal = AreEqual(PlayTenFrames(*walker), without);
    printf("saved in %zu bytes; after loading, the ten frames are %s\n", saved.bytes.size(),
           equal ? "the same" : "DIFFERENT");
    EndRoom();
    return equal ? 0 : 1;
}
