<?xml version="1.0" encoding="UTF-8"?>
<tileset version="1.8" name="tiles" tilewidth="16" tileheight="16" tilecount="1" columns="1">
 <image source="tile.png" width="16" height="16"/>
</tileset>
