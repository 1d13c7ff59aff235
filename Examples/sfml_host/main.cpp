// A car drives through a park, seen by three cameras of the module: one that leans into the bends, one that zooms, a
// map.
//
//   sfml_host                                  in a window until it is closed
//   sfml_host --frames COUNT [--picture FILE]  so many frames, then checks the last one; status 1 when it is wrong
#include "host.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace
{
constexpr int ROOM_WIDTH = 1600, ROOM_HEIGHT = 1200;
constexpr unsigned WINDOW_WIDTH = 960, WINDOW_HEIGHT = 540;
constexpr float RADIANS = 3.14159265f / 180.0f;
const sf::Color CAR_COLOUR(214, 40, 40);

// ---- the game: what SFML draws, in room coordinates ----

// Once around the park in 720 frames, on a road of the shape of an eight.
sf::Vector2f OnRoad(int frame)
{
    const float turn = static_cast<float>(frame) * 0.5f * RADIANS;
    return {800.0f + 600.0f * std::sin(turn), 600.0f + 400.0f * std::sin(2.0f * turn)};
}

struct Car : CInstance
{
    Car() : CInstance(800.0f, 600.0f, NextInstanceId(), 0, false) {}
    void Step()
    {
        const sf::Vector2f from = OnRoad(frame), to = OnRoad(++frame);
        x = to.x;
        y = to.y;
        heading = std::atan2(to.y - from.y, to.x - from.x) / RADIANS;
    }

    int frame = 0;
    float heading = 0.0f; // degrees, clockwise from the room's x axis, as in SFML
};

struct Brush
{
    sf::RenderTarget& target;
    sf::RenderStates states;

    void Put(sf::Shape&& shape, sf::Vector2f at, float angle, sf::Color colour)
    {
        shape.setOrigin(shape.getLocalBounds().width / 2, shape.getLocalBounds().height / 2);
        shape.setPosition(at);
        shape.setRotation(angle);
        shape.setFillColor(colour);
        target.draw(shape, states);
    }
};

sf::Vector2f At(int x, int y) { return {static_cast<float>(x), static_cast<float>(y)}; }

void DrawPark(Brush brush, const Car& car)
{
    brush.Put(sf::RectangleShape(At(ROOM_WIDTH, ROOM_HEIGHT)), At(ROOM_WIDTH / 2, ROOM_HEIGHT / 2), 0, {104, 159, 56});
    for (int tile = 0; tile < 16 * 12; tile += 2)
        brush.Put(sf::RectangleShape({100, 100}), At(tile % 16 * 100 + tile / 16 % 2 * 100 + 50, tile / 16 * 100 + 50),
                  0, {124, 179, 66});
    for (int frame = 0; frame < 720; frame += 3)
        brush.Put(sf::CircleShape(34), OnRoad(frame), 0, {120, 120, 120});
    for (int tree = 0; tree < 60; ++tree)
    {
        const int x = tree * 397 % ROOM_WIDTH, y = tree * 211 % ROOM_HEIGHT;
        brush.Put(sf::CircleShape(22), At(x, y), 0, {27, 94, 32});
        brush.Put(sf::CircleShape(13), At(x - 6, y - 6), 0, {56, 142, 60});
    }
    brush.Put(sf::RectangleShape({56, 30}), {car.x, car.y}, car.heading, CAR_COLOUR);
    brush.Put(sf::RectangleShape({10, 26}), {car.x, car.y}, car.heading, sf::Color::White);
}

// ---- the room: three views, each with a camera ----

struct Room : CRoom
{
    explicit Room(const Car& car)
    {
        r_width = ROOM_WIDTH;
        r_height = ROOM_HEIGHT;
        for (int i = 0; i < ROOM_VIEWS; ++i)
            (r_view[i] = &views[i])->cameraID = -1;

        // The rectangle that each shows first, how close to its edges the car may come, and whom it follows.
        AddView(0, 0, 480, 540, 180, 200, car.m_id);
        AddView(1, 0, 480, 270, 240, 135, car.m_id);
        AddView(2, -267, 2134, ROOM_HEIGHT, 0, 0, -1);
        AddBegin(0, [&car](CCamera& camera) { camera.SetViewAngle(25.0f * std::sin(car.heading * RADIANS)); });
        AddBegin(1,
                 [&car](CCamera& camera)
                 {
                     const float zoom = 1.0f + 0.6f * std::sin(static_cast<float>(car.frame) / 60.0f);
                     camera.SetViewWidth(480.0f * zoom);
                     camera.SetViewHeight(270.0f * zoom);
                 });
        Run_Room = this;
        g_CM.SetInitialLoadHighPoint();
        g_CM.StartRoom();
    }

    ~Room()
    {
        g_CM.EndRoom();
        Run_Room = nullptr;
    }

    void AddView(int view, int x, int width, int height, int horizontalBorder, int verticalBorder, int target)
    {
        // Visible, rectangle in the room, port (SFML's views have that), borders, no limit of speed, target.
        KvRoomView data = {1, x, 0, width, height, 0, 0, 0, 0, horizontalBorder, verticalBorder, -1, -1, target};
        if (CCamera* const camera = g_CM.CreateCameraFromView(&data))
            views[view].cameraID = camera->GetID();
    }

    // A begin callback changes its camera before the step after the target builds the matrices.
    void AddBegin(int view, std::function<void(CCamera&)> change)
    {
        RValue script = NewScript([change] { change(*g_CM.GetCamera(Current_Object)); });
        if (CCamera* const camera = g_CM.GetCamera(views[view].cameraID))
            camera->SetBeginScript(&script);
    }

    CViewGM views[ROOM_VIEWS];
};

// ---- drawing through SFML's views ----

// Where each view lies in the window, as parts of its size.
const std::array<sf::FloatRect, 3> PORTS = {
    sf::FloatRect(0, 0, 0.5f, 1), {0.5f, 0, 0.5f, 0.5f}, {0.5f, 0.5f, 0.5f, 0.5f}};

// Any callback may destroy the camera: it is looked up again after each.
bool Apply(int id)
{
    if (CCamera* const camera = g_CM.GetCamera(id))
        camera->Begin();
    if (CCamera* const camera = g_CM.GetCamera(id))
        camera->CameraUpdate();
    CCamera* const camera = g_CM.GetCamera(id);
    if (camera != nullptr)
        camera->ApplyMatrices();
    return camera != nullptr;
}

// Marks in the map what another camera shows: the corners of its clip square, carried back into the room.
void DrawOutline(sf::RenderTarget& target, const Shown& map, const Shown& other)
{
    sf::VertexArray outline(sf::LineStrip);
    for (sf::Vector2f corner : {At(-1, -1), At(1, -1), At(1, 1), At(-1, 1), At(-1, -1)})
        outline.append({other.roomToClip.getInverse().transformPoint(corner), sf::Color::White});
    target.draw(outline, map.roomToClip);
}

// Two ways lead to the same picture: an sf::View on the target, or the camera's sf::Transform on what is drawn. The map
// takes the second; so does whatever an sf::View cannot do.
std::array<Shown, 3> DrawFrame(sf::RenderTarget& target, const Room& room, const Car& car)
{
    std::array<Shown, 3> shown;
    target.clear();
    for (size_t i = 0; i < PORTS.size(); ++i)
    {
        if (!Apply(room.views[i].cameraID) || !LastShown().isFlat)
            continue;
        shown[i] = LastShown();
        const bool byView = i < 2 && shown[i].difference < 0.001f;
        sf::View view = byView ? shown[i].view : sf::View(sf::FloatRect(-1, -1, 2, 2)); // clip space, y downwards
        view.setViewport(PORTS[i]);
        target.setView(view);
        DrawPark({target, byView ? sf::Transform() : shown[i].roomToClip}, car);
        if (CCamera* const camera = g_CM.GetCamera(room.views[i].cameraID))
            camera->End();
    }
    DrawOutline(target, shown[2], shown[0]);
    DrawOutline(target, shown[2], shown[1]);
    return shown;
}

// The check of a frame: in each port the car's red is where the camera's own matrices put it.
bool IsRight(const sf::RenderWindow& window, const std::array<Shown, 3>& shown, const Car& car, const char* pictureFile)
{
    sf::Texture texture;
    texture.create(WINDOW_WIDTH, WINDOW_HEIGHT);
    texture.update(window);
    const sf::Image picture = texture.copyToImage();
    bool isRight = pictureFile == nullptr || picture.saveToFile(pictureFile);
    for (size_t i = 0; i < PORTS.size(); ++i)
    {
        const float angle = car.heading * RADIANS;
        const sf::Vector2f hood(car.x + 16.0f * std::cos(angle), car.y + 16.0f * std::sin(angle));
        const sf::Vector2f clip = shown[i].roomToClip.transformPoint(hood);
        const float x = (PORTS[i].left + PORTS[i].width * (clip.x + 1.0f) / 2.0f) * WINDOW_WIDTH;
        const float y = (PORTS[i].top + PORTS[i].height * (clip.y + 1.0f) / 2.0f) * WINDOW_HEIGHT;
        const bool isInside = x >= 0 && x < WINDOW_WIDTH && y >= 0 && y < WINDOW_HEIGHT;
        const bool isRed = isInside && picture.getPixel(unsigned(x), unsigned(y)) == CAR_COLOUR;
        printf("view %zu: %s, sf::View is %f from the matrices\n", i, isRed ? "the car" : "NO car",
               double{shown[i].difference});
        isRight = isRight && isRed && shown[i].difference < 0.001f;
    }
    return isRight;
}
} // namespace

int main(int argc, char** argv)
{
    const int frames = argc >= 3 && strcmp(argv[1], "--frames") == 0 ? std::atoi(argv[2]) : 0;
    const char* const pictureFile = argc == 5 && strcmp(argv[3], "--picture") == 0 ? argv[4] : nullptr;
    sf::RenderWindow window(sf::VideoMode(WINDOW_WIDTH, WINDOW_HEIGHT), "The camera module and SFML", sf::Style::Close);
    window.setFramerateLimit(frames == 0 ? 60 : 0);

    Car car;
    const Room room(car);
    while (window.isOpen())
    {
        for (sf::Event event; window.pollEvent(event);)
            if (event.type == sf::Event::Closed)
                window.close();
        car.Step();
        const std::array<Shown, 3> shown = DrawFrame(window, room, car);
        if (car.frame == frames)
            return IsRight(window, shown, car, pictureFile) ? 0 : 1;
        window.display();
    }
    return 0;
}
